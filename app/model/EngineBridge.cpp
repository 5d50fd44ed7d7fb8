#include "app/model/EngineBridge.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <utility>

namespace fennik::app {

namespace {

constexpr ConflictDecision cancellation{.choice = ConflictChoice::cancel};

/// The one job that asks.
JobSnapshot askingJob(const TransferEngine& engine) {
    auto jobs = engine.snapshots();
    const auto found =
        std::ranges::find(jobs, JobSnapshot::State::askingConflict, &JobSnapshot::state);
    return found == jobs.end() ? JobSnapshot() : std::move(*found);
}

} // namespace

/// What the threads that tell have in common with the main thread.
struct EngineBridge::Shared : std::enable_shared_from_this<Shared> {
    Shared(TransferEngine& askingEngine, Executor& mainThread, Listeners told)
        : engine(askingEngine), main(mainThread), listeners(std::move(told)) {}

    void takeJobs(std::vector<JobSnapshot> jobs);
    void takeEnd(JobSnapshot job, TransferRequest request);
    ConflictDecision decide(const Conflict& conflict);
    /// Runs `task` on the main thread, unless the bridge is closed by then.
    template <class Tell>
    void tell(Tell task);

    TransferEngine& engine;
    Executor& main;
    Listeners listeners; ///< main thread only

    std::mutex lock;                                ///< guards what follows
    std::optional<std::vector<JobSnapshot>> newest; ///< on its way to the main thread
    std::shared_ptr<PendingConflict> waiting;
    bool isClosed = false;
};

template <class Tell>
void EngineBridge::Shared::tell(Tell task) {
    main.execute([shared = shared_from_this(), task = std::move(task)]() mutable {
        {
            const std::lock_guard guard(shared->lock);
            if (shared->isClosed)
                return;
        }
        task(*shared);
    });
}

void EngineBridge::Shared::takeJobs(std::vector<JobSnapshot> jobs) {
    {
        const std::lock_guard guard(lock);
        const bool isOnItsWay = newest.has_value();
        newest = std::move(jobs);
        if (isOnItsWay)
            return;
    }
    tell([](Shared& shared) {
        std::optional<std::vector<JobSnapshot>> taken;
        {
            const std::lock_guard guard(shared.lock);
            taken = std::exchange(shared.newest, {});
        }
        shared.listeners.jobsChanged(std::move(*taken));
    });
}

void EngineBridge::Shared::takeEnd(JobSnapshot job, TransferRequest request) {
    tell([job = std::move(job), request = std::move(request)](Shared& shared) {
        shared.listeners.jobFinished(job, request);
    });
}

ConflictDecision EngineBridge::Shared::decide(const Conflict& conflict) {
    const auto pending = std::make_shared<PendingConflict>(conflict, askingJob(engine));
    {
        const std::lock_guard guard(lock);
        if (isClosed)
            return cancellation;
        waiting = pending;
    }
    tell([pending](Shared& shared) {
        if (!pending->isAnswered())
            shared.listeners.clashed(pending);
    });
    const auto decision = pending->wait();
    const std::lock_guard guard(lock);
    waiting.reset();
    return decision;
}

EngineBridge::EngineBridge(TransferEngine& engine, Executor& main, Listeners listeners)
    : shared_(std::make_shared<Shared>(engine, main, std::move(listeners))) {
    engine.setOnUpdate(
        [shared = shared_](std::vector<JobSnapshot> jobs) { shared->takeJobs(std::move(jobs)); });
    engine.setOnJobFinished([shared = shared_](JobSnapshot job, TransferRequest request) {
        shared->takeEnd(std::move(job), std::move(request));
    });
    engine.setResolver(
        [shared = shared_](const Conflict& conflict) { return shared->decide(conflict); });
}

EngineBridge::~EngineBridge() {
    close();
}

void EngineBridge::cancelClash(const Uuid& job) {
    const std::lock_guard guard(shared_->lock);
    if (shared_->waiting && shared_->waiting->job.id == job)
        shared_->waiting->answer(cancellation);
}

void EngineBridge::close() {
    const std::lock_guard guard(shared_->lock);
    shared_->isClosed = true;
    if (shared_->waiting)
        shared_->waiting->answer(cancellation);
}

} // namespace fennik::app
