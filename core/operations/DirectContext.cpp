#include "core/operations/DirectContext.h"

#include "core/operations/ClampedSum.h"

#include <utility>

namespace fennik {

DirectContext::DirectContext(TransferKind kind, const TrashProvider& trash,
                             ConflictResolver resolver, OnBytes onBytes)
    : kind_(kind), trash_(trash), resolver_(std::move(resolver)), onBytes_(std::move(onBytes)) {}

ConflictChoice DirectContext::answer(const Conflict& conflict) {
    {
        const std::lock_guard lock(lock_);
        if (cancelled_)
            return ConflictChoice::cancel;
        if (policy_)
            return policy_->choice;
    }
    const auto decision = resolver_ ? resolver_(conflict) : ConflictDecision{};
    const std::lock_guard lock(lock_);
    if (cancelled_)
        return ConflictChoice::cancel;
    if (decision.applyToAll)
        policy_ = decision;
    return decision.choice;
}

Checkpoint DirectContext::checkpoint() {
    return isCancelled() ? Checkpoint::stop : Checkpoint::goOn;
}

bool DirectContext::isCancelled() const {
    const std::lock_guard lock(lock_);
    return cancelled_;
}

void DirectContext::cancelNow() {
    const std::lock_guard lock(lock_);
    cancelled_ = true;
}

void DirectContext::setTotals(std::int64_t bytes, std::int64_t files) {
    const std::lock_guard lock(lock_);
    totalBytes_ = bytes;
    totalFiles_ = files;
}

void DirectContext::bytesWritten(std::int64_t count) {
    bytesAccounted(count);
}

void DirectContext::bytesAccounted(std::int64_t count) {
    {
        const std::lock_guard lock(lock_);
        addClamped(doneBytes_, count);
    }
    if (onBytes_)
        onBytes_(count);
}

void DirectContext::filesDone(std::int64_t count) {
    const std::lock_guard lock(lock_);
    addClamped(doneFiles_, count);
}

void DirectContext::itemsSkipped(std::int64_t count) {
    const std::lock_guard lock(lock_);
    addClamped(skipped_, count);
}

void DirectContext::addError(std::string sentence) {
    const std::lock_guard lock(lock_);
    errors_.push_back(std::move(sentence));
}

void DirectContext::addStep(UndoStep step) {
    const std::lock_guard lock(lock_);
    steps_.push_back(std::move(step));
}

void DirectContext::dropLastStep() {
    const std::lock_guard lock(lock_);
    steps_.pop_back();
}

std::vector<std::string> DirectContext::errors() const {
    const std::lock_guard lock(lock_);
    return errors_;
}

std::vector<UndoStep> DirectContext::takeSteps() {
    const std::lock_guard lock(lock_);
    return std::exchange(steps_, {});
}

std::int64_t DirectContext::doneBytes() const {
    const std::lock_guard lock(lock_);
    return doneBytes_;
}

std::int64_t DirectContext::totalBytes() const {
    const std::lock_guard lock(lock_);
    return totalBytes_;
}

std::int64_t DirectContext::doneFiles() const {
    const std::lock_guard lock(lock_);
    return doneFiles_;
}

std::int64_t DirectContext::totalFiles() const {
    const std::lock_guard lock(lock_);
    return totalFiles_;
}

std::int64_t DirectContext::skipped() const {
    const std::lock_guard lock(lock_);
    return skipped_;
}

} // namespace fennik
