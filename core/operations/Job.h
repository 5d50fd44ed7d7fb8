#pragma once

#include "core/base/Date.h"
#include "core/base/Uuid.h"
#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TimedWait.h"
#include "core/operations/TransferRequest.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fennik {

/// One job of the queue, as the user steers it and the worker tells of it. Safe on any thread; the
/// lock is held for moments only, and waits let go of it.
class Job {
public:
    /// What is told once, when the job has ended.
    struct Ending {
        JobSnapshot snapshot = {};
        TransferRequest request = {};
    };

    explicit Job(TransferRequest request);

    const Uuid& id() const { return id_; }
    TransferKind kind() const { return kind_; }
    /// Without the outcomes. While errors come by the thousands, the latest of them may be missing.
    JobSnapshot snapshot();
    bool hasEnded() const;
    bool isCancelled() const;
    bool isPaused() const;

    void pause();
    void resume();
    /// Wakes it. Says whether the job has ended by that, because it had not begun; who has
    /// cancelled it tells its end then.
    [[nodiscard]] bool cancel();

    // What follows is for the worker.

    /// Fails where it has been cancelled before; nothing is to be done then. The same is true of
    /// `startAsking`.
    [[nodiscard]] bool begin(Date today);
    /// The counting is over.
    void startWork();
    [[nodiscard]] bool startAsking();
    void stopAsking();
    void waitWhilePaused();
    /// A pause or a cancellation ends the wait: then it says stop.
    Checkpoint waitFor(std::chrono::milliseconds duration, const TimedWait& wait);
    /// `change` gets the snapshot with the counters, under the lock.
    template <class Change>
    void update(Change change) {
        const std::lock_guard lock(lock_);
        change(status_);
    }
    void addError(std::string sentence);
    /// It will end as failed, with the first sentence that is given here.
    void fail(std::string sentence);
    /// Settles how the job has ended.
    void end(std::vector<PairOutcome> outcomes);

    /// What was asked for, until the ending is taken.
    const TransferRequest& request() const { return request_; }
    /// For who tells of the end.
    Ending takeEnding();

private:
    void publishErrors();

    const Uuid id_ = Uuid::random();
    const TransferKind kind_;
    TransferRequest request_;

    mutable std::mutex lock_; ///< guards what follows
    std::condition_variable woken_;
    /// `paused` stands for itself: the state is what it would be without.
    JobSnapshot status_;
    std::vector<std::string> errors_; ///< moves into the snapshot at the end
    std::optional<std::string> failure_;
    bool cancelled_ = false;
    std::vector<PairOutcome> outcomes_;
};

} // namespace fennik
