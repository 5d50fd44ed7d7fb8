#include "app/model/DialogStage.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

namespace {

bool isQuestion(const Dialog& dialog) {
    return std::holds_alternative<ConflictDialog>(dialog) ||
           std::holds_alternative<PasswordDialog>(dialog);
}

/// Whether a worker waits for the answer.
bool isWaitedFor(const Dialog& dialog) {
    if (const auto* clash = std::get_if<ConflictDialog>(&dialog))
        return !clash->pending->isAnswered();
    const auto* password = std::get_if<PasswordDialog>(&dialog);
    return password != nullptr && !password->pending->isAnswered();
}

} // namespace

bool DialogStage::isOpen(Id id) const {
    return shownId() == id || std::ranges::find(waiting_, id, &Waiting::id) != waiting_.end();
}

void DialogStage::show(Dialog dialog) {
    shown_ = std::move(dialog);
    shownId_ = ++lastId_;
}

void DialogStage::open(Dialog dialog) {
    if (shown_ && isWaitedFor(*shown_))
        waiting_.push_back({++lastId_, std::move(dialog)});
    else
        show(std::move(dialog));
}

void DialogStage::openQuestion(Dialog question) {
    if (shown_ && !isQuestion(*shown_))
        waiting_.push_front({shownId_, std::move(*std::exchange(shown_, {}))});
    open(std::move(question));
}

void DialogStage::close(Id id) {
    std::erase_if(waiting_, [id](const Waiting& waiting) { return waiting.id == id; });
    if (shownId() != id)
        return;
    shown_.reset();
    // Others may have answered meanwhile.
    std::erase_if(waiting_, [](const Waiting& waiting) {
        return isQuestion(waiting.dialog) && !isWaitedFor(waiting.dialog);
    });
    if (waiting_.empty())
        return;
    shownId_ = waiting_.front().id;
    shown_ = std::move(waiting_.front().dialog);
    waiting_.pop_front();
}

} // namespace fennik::app
