#pragma once

#include "app/model/PendingAnswer.h"
#include "core/operations/Conflict.h"
#include "core/operations/JobSnapshot.h"

#include <utility>

namespace fennik::app {

/// A clash that waits for the user.
struct PendingConflict final : PendingAnswer<ConflictDecision> {
    PendingConflict(Conflict asked, JobSnapshot askingJob)
        : conflict(std::move(asked)), job(std::move(askingJob)) {}

    const Conflict conflict;
    const JobSnapshot job; ///< as it stood when it asked
};

} // namespace fennik::app
