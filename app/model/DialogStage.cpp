#include "app/model/DialogStage.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

bool DialogStage::isOpen(Id id) const {
    return shownId() == id || std::ranges::find(waiting_, id, &Waiting::id) != waiting_.end();
}

void DialogStage::show(Dialog dialog) {
    shown_ = std::move(dialog);
    shownId_ = ++lastId_;
}

bool DialogStage::showsOpenConflict() const {
    const auto* shown = shown_ ? std::get_if<ConflictDialog>(&*shown_) : nullptr;
    return shown != nullptr && !shown->pending->isDecided();
}

void DialogStage::open(Dialog dialog) {
    if (showsOpenConflict())
        waiting_.push_back({++lastId_, std::move(dialog)});
    else
        show(std::move(dialog));
}

void DialogStage::openConflict(std::shared_ptr<PendingConflict> pending) {
    const bool replaces = shown_ && !std::holds_alternative<ConflictDialog>(*shown_);
    if (replaces)
        waiting_.push_front({shownId_, std::move(*shown_)});
    open(ConflictDialog{std::move(pending)});
}

void DialogStage::close(Id id) {
    std::erase_if(waiting_, [id](const Waiting& waiting) { return waiting.id == id; });
    if (shownId() != id)
        return;
    shown_.reset();
    if (waiting_.empty())
        return;
    shownId_ = waiting_.front().id;
    shown_ = std::move(waiting_.front().dialog);
    waiting_.pop_front();
}

} // namespace fennik::app
