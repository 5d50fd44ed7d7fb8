#pragma once

#include "core/base/Date.h"
#include "core/base/Uuid.h"
#include "core/operations/TransferRequest.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// What a pair of a request came to.
enum class PairOutcome {
    pending, ///< not reached
    done,    ///< everything is there
    skipped, ///< or something in it was
    failed,  ///< or something in it did
};

/// What the user sees of a job at one moment.
struct JobSnapshot {
    enum class State {
        failed,
        waiting,
        preparing,
        running,
        paused,
        askingConflict,
        finished,
        cancelled,
    };

    Uuid id = {};
    TransferKind kind = TransferKind::copy;
    std::string title = {};
    std::string destination = {}; ///< path of a folder, bytes; may be empty
    State state = State::waiting;
    std::string failure = {}; ///< the message of `failed`
    std::int64_t totalBytes = 0;
    std::int64_t doneBytes = 0;
    std::int64_t totalFiles = 0;
    std::int64_t doneFiles = 0;
    std::int64_t skipped = 0;
    std::string currentName = {};
    double bytesPerSecond = 0; ///< of bytes really moved; 0 while paused or not known
    /// The time that is left, from bytes and items together; none while it cannot be told.
    std::optional<double> secondsLeft = {};
    /// One sentence for each item that failed, in the order of occurrence. Never null. Shared
    /// between the snapshots of a job, and never changed.
    std::shared_ptr<const std::vector<std::string>> errors =
        std::make_shared<const std::vector<std::string>>();
    std::optional<Date> startedAt = {};
    bool paused = false; ///< the user's wish, also of a job that waits
    /// One for each pair of the request, in the snapshot that tells the end of the job alone.
    std::vector<PairOutcome> outcomes = {};

    bool hasEnded() const {
        return state == State::finished || state == State::failed || state == State::cancelled;
    }
};

} // namespace fennik
