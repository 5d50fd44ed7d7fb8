#pragma once

#include "core/base/Uuid.h"
#include "core/operations/Conflict.h"
#include "core/operations/JobSnapshot.h"

#include <condition_variable>
#include <mutex>
#include <optional>

namespace fennik::app {

/// A clash that waits for the user: shared between the worker, which waits, and the main thread,
/// where it is decided.
class PendingConflict {
public:
    /// What the worker asks, and the job as it stood then.
    PendingConflict(Conflict asked, JobSnapshot askingJob);

    const Uuid id = Uuid::random();
    const Conflict conflict;
    const JobSnapshot job;

    /// The first decision counts. Safe on any thread.
    void decide(ConflictDecision decision);
    bool isDecided() const;
    /// Returns the decision once there is one.
    ConflictDecision wait();

private:
    mutable std::mutex lock_;
    std::condition_variable decided_;
    std::optional<ConflictDecision> decision_;
};

} // namespace fennik::app
