#include "app/model/PanelHistory.h"

namespace fennik::app {

namespace {

void push(std::vector<std::string>& stack, const std::string& path) {
    if (stack.size() == PanelHistory::mostSteps)
        stack.erase(stack.begin());
    stack.push_back(path);
}

} // namespace

void PanelHistory::record(const Uuid& tab, Step step, const std::string& left,
                          const std::string& reached) {
    const bool stays = left == reached;
    auto& back = backStack_[tab];
    auto& forward = forwardStack_[tab];
    switch (step) {
    case Step::stay:
        break;
    case Step::navigate:
        if (stays)
            return;
        push(back, left);
        forward.clear();
        break;
    case Step::back:
        back.pop_back();
        if (!stays)
            push(forward, left);
        break;
    case Step::forward:
        forward.pop_back();
        if (!stays)
            push(back, left);
        break;
    }
}

std::optional<std::string> PanelHistory::target(const Uuid& tab, Step step) const {
    if (step != Step::back && step != Step::forward)
        return std::nullopt;
    const auto& stacks = step == Step::back ? backStack_ : forwardStack_;
    const auto found = stacks.find(tab);
    if (found == stacks.end() || found->second.empty())
        return std::nullopt;
    return found->second.back();
}

void PanelHistory::forget(const Uuid& tab) {
    backStack_.erase(tab);
    forwardStack_.erase(tab);
}

} // namespace fennik::app
