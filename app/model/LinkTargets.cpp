#include "app/model/LinkTargets.h"

#include <algorithm>

namespace fennik::app {

LinkTargets::LinkTargets(PanelServices services, std::function<void()> changed)
    : services_(std::move(services)), changed_(std::move(changed)) {}

const LinkTarget* LinkTargets::find(const std::string& name) const {
    const auto found = links_.find(name);
    if (found == links_.end())
        return nullptr;
    const auto& target = found->second.target;
    return target ? &*target : nullptr;
}

void LinkTargets::want(const FileItems& items, std::size_t firstRow, std::size_t lastRow) {
    std::vector<std::string> names;
    for (auto row = firstRow; row < std::min(lastRow, items.size()); ++row) {
        const auto item = items.view(row);
        if (item.kind != FileKind::symlink)
            continue;
        std::string name(item.name);
        if (!std::exchange(links_[name].asked, true))
            names.push_back(std::move(name));
    }
    if (names.empty())
        return;
    auto work = [&files = services_.files, folder = items.folder(), names = std::move(names)] {
        NamedTargets targets;
        for (const auto& name : names) {
            const auto url = folder.appending(name);
            LinkTarget target{.path = files.linkTarget(url.path()).value_or(""),
                              .isBroken = !files.status(url.path(), FollowLinks::yes)};
            targets.emplace_back(name, std::move(target));
        }
        return targets;
    };
    ++questions_;
    runThen(
        services_.disk, services_.main, items.folder().path(), life_, std::move(work),
        [this, reading = reading_](NamedTargets targets) { take(reading, std::move(targets)); });
}

void LinkTargets::take(const std::shared_ptr<int>& reading, NamedTargets targets) {
    --questions_;
    if (reading == reading_) {
        for (auto& [name, target] : targets)
            links_[name].target = std::move(target);
    }
    changed_();
}

void LinkTargets::forget() {
    links_.clear();
    askAgain();
}

void LinkTargets::know(NamedTargets targets) {
    forget();
    for (auto& [name, target] : targets)
        links_[name] = {.target = std::move(target), .asked = true};
}

void LinkTargets::askAgain() {
    reading_ = std::make_shared<int>();
    for (auto& [_, link] : links_)
        link.asked = false;
}

} // namespace fennik::app
