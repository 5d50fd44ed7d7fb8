#include "core/operations/TransferEngine.h"

#include "core/operations/ItemTransfer.h"
#include "core/operations/Job.h"
#include "core/operations/JobContext.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>

namespace fennik {

namespace {

using TimePoint = std::chrono::steady_clock::time_point;
using Jobs = std::vector<std::shared_ptr<Job>>;

constexpr std::chrono::milliseconds publishingPause{100};

std::vector<JobSnapshot> snapshotsOf(const Jobs& jobs) {
    std::vector<JobSnapshot> snapshots;
    snapshots.reserve(jobs.size());
    for (const auto& job : jobs)
        snapshots.push_back(job->snapshot());
    return snapshots;
}

/// The work of a job, which no body does.
std::vector<PairOutcome> transfer(const TransferPairs& pairs, JobContext& context) {
    ItemTransfer transfer(context);
    const auto totals = transfer.count(pairs);
    context.setTotals(totals.bytes, totals.files);
    context.startWork();
    if (context.checkpoint() == Checkpoint::stop)
        return {};
    return transfer.run(pairs);
}

std::vector<PairOutcome> runBody(const TransferEngine::Body& body, JobContext& context) {
    context.startWork();
    if (context.checkpoint() == Checkpoint::stop)
        return {};
    return body(context);
}

} // namespace

struct TransferEngine::State final : JobHost {
    explicit State(EngineServices given) : services(std::move(given)) {}

    void publish(Publishing when) override;
    ConflictResolver resolver() const override;
    std::optional<std::int64_t> throttle() const override;
    TimePoint now() const override { return services.now(); }
    const TimedWait& timedWait() const override { return services.wait; }
    const TrashProvider& trash() const override { return services.trash; }

    Jobs allJobs() const;
    std::shared_ptr<Job> find(const Uuid& id) const;
    void runNext();
    void cancel(const Jobs& chosen);
    void removeEnded(Jobs chosen);
    void tellEnd(Job& job);

    const EngineServices services;

    /// A job of the queue that has not begun.
    struct Waiting {
        std::shared_ptr<Job> job;
        std::string undoTitle = {};
        Body body = {};
    };
    /// Guards what follows; never held while the lock of a job is taken, or during a call out.
    mutable std::mutex lock;
    Jobs jobs; ///< in the order of the queue
    std::deque<Waiting> queue;
    OnUpdate onUpdate;
    OnJobFinished onJobFinished;
    ConflictResolver conflictResolver;
    std::optional<std::int64_t> bytesPerSecond;
    std::optional<TimePoint> lastPublished;
    bool isPublishing = false;
    bool hasChangedMeanwhile = false;
};

Jobs TransferEngine::State::allJobs() const {
    const std::lock_guard guard(lock);
    return jobs;
}

std::shared_ptr<Job> TransferEngine::State::find(const Uuid& id) const {
    const std::lock_guard guard(lock);
    const auto found = std::ranges::find(jobs, id, [](const auto& job) { return job->id(); });
    return found == jobs.end() ? nullptr : *found;
}

ConflictResolver TransferEngine::State::resolver() const {
    const std::lock_guard guard(lock);
    return conflictResolver;
}

std::optional<std::int64_t> TransferEngine::State::throttle() const {
    const std::lock_guard guard(lock);
    return bytesPerSecond;
}

// One thread at a time tells, and tells again when something has changed meanwhile: an older list
// can thus never come after a newer one.
void TransferEngine::State::publish(Publishing when) {
    const auto time = now();
    std::unique_lock guard(lock);
    if (when == Publishing::paced && lastPublished && time - *lastPublished < publishingPause)
        return;
    lastPublished = time;
    hasChangedMeanwhile = true;
    if (std::exchange(isPublishing, true))
        return;
    while (std::exchange(hasChangedMeanwhile, false)) {
        const auto call = onUpdate;
        const auto told = jobs;
        guard.unlock();
        if (call)
            call(snapshotsOf(told));
        guard.lock();
    }
    isPublishing = false;
}

void TransferEngine::State::runNext() {
    Waiting next;
    {
        const std::lock_guard guard(lock);
        next = std::move(queue.front());
        queue.pop_front();
    }
    auto& job = *next.job;
    if (!job.begin(services.today()))
        return;
    publish(Publishing::now);

    JobContext context(job, *this);
    auto outcomes =
        next.body ? runBody(next.body, context) : transfer(job.request().pairs, context);
    services.journal.record({.title = std::move(next.undoTitle),
                             .steps = context.takeSteps(),
                             .date = services.today()});
    job.end(std::move(outcomes));
    publish(Publishing::now);
    tellEnd(job);
}

void TransferEngine::State::tellEnd(Job& job) {
    auto ending = job.takeEnding();
    OnJobFinished call;
    {
        const std::lock_guard guard(lock);
        call = onJobFinished;
    }
    if (call)
        call(std::move(ending.snapshot), std::move(ending.request));
}

void TransferEngine::State::cancel(const Jobs& chosen) {
    Jobs ended;
    for (const auto& job : chosen)
        if (job->cancel())
            ended.push_back(job);
    publish(Publishing::now);
    for (const auto& job : ended)
        tellEnd(*job);
}

void TransferEngine::State::removeEnded(Jobs chosen) {
    std::erase_if(chosen, [](const auto& job) { return !job->hasEnded(); });
    {
        const std::lock_guard guard(lock);
        std::erase_if(
            jobs, [&](const auto& job) { return std::ranges::find(chosen, job) != chosen.end(); });
    }
    publish(Publishing::now);
}

TransferEngine::TransferEngine(EngineServices services)
    : state_(std::make_shared<State>(std::move(services))) {}

TransferEngine::~TransferEngine() {
    setOnUpdate({});
    setOnJobFinished({});
    setResolver({});
    cancelAll();
}

Uuid TransferEngine::enqueue(TransferRequest request, std::string undoTitle, Body body) {
    if (undoTitle.empty())
        undoTitle = request.jobTitle();
    const auto job = std::make_shared<Job>(std::move(request));
    {
        const std::lock_guard guard(state_->lock);
        state_->jobs.push_back(job);
        state_->queue.push_back({job, std::move(undoTitle), std::move(body)});
    }
    // Each task runs the first job of the queue: two threads that add jobs at the same time cannot
    // make the worker's order differ from the one that the user sees.
    state_->services.worker.execute([state = state_] { state->runNext(); });
    state_->publish(Publishing::now);
    return job->id();
}

void TransferEngine::pause(const Uuid& id) {
    if (const auto job = state_->find(id))
        job->pause();
    state_->publish(Publishing::now);
}

void TransferEngine::resume(const Uuid& id) {
    if (const auto job = state_->find(id))
        job->resume();
    state_->publish(Publishing::now);
}

void TransferEngine::cancel(const Uuid& id) {
    const auto job = state_->find(id);
    state_->cancel(job ? Jobs{job} : Jobs{});
}

void TransferEngine::cancelAll() {
    state_->cancel(state_->allJobs());
}

void TransferEngine::removeEnded() {
    state_->removeEnded(state_->allJobs());
}

void TransferEngine::remove(const Uuid& id) {
    const auto job = state_->find(id);
    state_->removeEnded(job ? Jobs{job} : Jobs{});
}

std::vector<JobSnapshot> TransferEngine::snapshots() const {
    return snapshotsOf(state_->allJobs());
}

void TransferEngine::setOnUpdate(OnUpdate onUpdate) {
    const std::lock_guard guard(state_->lock);
    std::swap(state_->onUpdate, onUpdate);
}

void TransferEngine::setOnJobFinished(OnJobFinished onJobFinished) {
    const std::lock_guard guard(state_->lock);
    std::swap(state_->onJobFinished, onJobFinished);
}

void TransferEngine::setResolver(ConflictResolver resolver) {
    const std::lock_guard guard(state_->lock);
    std::swap(state_->conflictResolver, resolver);
}

void TransferEngine::setThrottle(std::optional<std::int64_t> bytesPerSecond) {
    const std::lock_guard guard(state_->lock);
    state_->bytesPerSecond = bytesPerSecond && *bytesPerSecond >= 1 ? bytesPerSecond : std::nullopt;
}

} // namespace fennik
