#include "app/model/DiskActions.h"

namespace fennik::app {

namespace {

/// What takes no longer than this is not worth a word.
constexpr auto patience = std::chrono::milliseconds(150);

} // namespace

void DiskActions::begin(std::string text) {
    running_.push_back(std::move(text));
    if (running_.size() == 1)
        await();
}

void DiskActions::end() {
    running_.pop_front();
    patience_.cancel();
    if (!running_.empty())
        await();
    if (!std::exchange(busyText_, {}).empty())
        changed_();
}

void DiskActions::await() {
    patience_.schedule(patience, [this] {
        busyText_ = running_.front();
        changed_();
    });
}

} // namespace fennik::app
