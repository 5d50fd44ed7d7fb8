#include "app/model/PendingConflict.h"

#include <utility>

namespace fennik::app {

PendingConflict::PendingConflict(Conflict asked, JobSnapshot askingJob)
    : conflict(std::move(asked)), job(std::move(askingJob)) {}

void PendingConflict::decide(ConflictDecision decision) {
    {
        const std::lock_guard lock(lock_);
        if (decision_)
            return;
        decision_ = decision;
    }
    decided_.notify_all();
}

bool PendingConflict::isDecided() const {
    const std::lock_guard lock(lock_);
    return decision_.has_value();
}

ConflictDecision PendingConflict::wait() {
    std::unique_lock lock(lock_);
    decided_.wait(lock, [this] { return decision_.has_value(); });
    return *decision_;
}

} // namespace fennik::app
