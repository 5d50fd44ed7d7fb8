#pragma once

#include "core/base/Date.h"
#include "core/base/Executor.h"
#include "core/operations/Conflict.h"
#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TimedWait.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// What the engine needs of the world around it. All of it outlives the engine.
struct EngineServices {
    Executor& worker; ///< runs one task at a time, in order; a thread of its own
    UndoJournal& journal;
    const TrashProvider& trash;
    std::function<std::chrono::steady_clock::time_point()> now; ///< on any thread
    std::function<Date()> today;                                ///< on any thread
    /// On the worker.
    TimedWait wait = [](std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
                        std::chrono::milliseconds duration) { condition.wait_for(lock, duration); };
};

/// The queue of jobs: runs one after the other on the worker, and tells what they are at through
/// snapshots. All calls are safe on any thread and none waits for the disk.
class TransferEngine {
public:
    /// What the pairs came to; those that are missing at the end were not reached.
    using Body = std::function<std::vector<PairOutcome>(OperationContext&)>;
    using OnUpdate = std::function<void(std::vector<JobSnapshot>)>;
    using OnJobFinished = std::function<void(JobSnapshot, TransferRequest)>;

    explicit TransferEngine(EngineServices services);
    /// Cancels all jobs, and nobody is told of anything any more. The worker must have ended
    /// before, or drop its tasks.
    ~TransferEngine();
    TransferEngine(const TransferEngine&) = delete;
    TransferEngine& operator=(const TransferEngine&) = delete;

    /// Adds a job at the end of the queue. `body` is its work in place of copying or moving. Its
    /// undo entry is called `undoTitle`, or like the job where that is empty.
    Uuid enqueue(TransferRequest request, std::string undoTitle = {}, Body body = {});
    void pause(const Uuid& id);
    void resume(const Uuid& id);
    /// A job that waits is cancelled at once; one that runs stops at its next checkpoint. One that
    /// asks does so once the resolver has returned, whatever it answers.
    void cancel(const Uuid& id);
    void cancelAll();
    /// Takes the jobs that have ended off the list.
    void removeEnded();
    /// Takes one job off the list, if it has ended.
    void remove(const Uuid& id);

    /// In the order of the queue.
    std::vector<JobSnapshot> snapshots() const;

    /// Called on whatever thread publishes, with no lock held, and on one at a time: at most ten
    /// times a second, except for changes of state. What changes during a call brings another one
    /// on the same thread.
    void setOnUpdate(OnUpdate onUpdate);
    /// Called once for every job that has ended, on the worker or the thread that cancelled it.
    /// Only this snapshot has the outcomes.
    void setOnJobFinished(OnJobFinished onJobFinished);
    void setResolver(ConflictResolver resolver);
    /// Bytes a second at most; none: no limit.
    void setThrottle(std::optional<std::int64_t> bytesPerSecond);

private:
    struct State;
    std::shared_ptr<State> state_; ///< shared with the tasks of the worker
};

} // namespace fennik
