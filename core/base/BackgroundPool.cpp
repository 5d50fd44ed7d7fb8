#include "core/base/BackgroundPool.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <iterator>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace fennik {

namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr auto idleThreadLives = std::chrono::seconds(10);

struct Job {
    std::string path;
    Task task;
};

struct RunningJob {
    std::string lane;
    SteadyClock::time_point since;
    std::deque<Job> waiting; ///< of the same lane, held back because this one is stuck
};

} // namespace

/// Shared with the threads, which are detached: one that hangs in a system call for ever must not
/// be waited for.
struct BackgroundPool::State : std::enable_shared_from_this<BackgroundPool::State> {
    LaneOf laneOf;
    std::chrono::milliseconds stuckAfter;
    std::function<void()> prepareThread;

    std::mutex mutex;
    std::condition_variable workCame;
    std::condition_variable threadEnded;
    std::deque<Job> queue;
    std::list<RunningJob> running;
    std::size_t idleThreads = 0;
    std::size_t starting = 0; ///< of `threads`, not yet at their first wait
    std::size_t threads = 0;
    bool stopping = false;

    void work();
    /// Wakes or starts a thread for every queued job. Call with the lock held.
    void staff();
    /// True when `job` was handed to the stuck job of its lane.
    bool holdBack(Job& job, const std::string& lane);
    void drop();
};

bool BackgroundPool::State::holdBack(Job& job, const std::string& lane) {
    const auto now = SteadyClock::now();
    const auto stuck = std::ranges::find_if(running, [&](const RunningJob& other) {
        return other.lane == lane && now - other.since >= stuckAfter;
    });
    if (stuck == running.end())
        return false;
    stuck->waiting.push_back(std::move(job));
    return true;
}

void BackgroundPool::State::staff() {
    workCame.notify_all();
    for (auto hands = idleThreads + starting; hands < queue.size(); ++hands) {
        try {
            // It waits for the lock, and so for the counts.
            std::thread([state = shared_from_this()] { state->work(); }).detach();
        } catch (const std::system_error&) {
            return; // no further thread is to be had: the next one that is free takes the queue
                    // over
        }
        ++threads;
        ++starting;
    }
}

void BackgroundPool::State::work() {
    prepareThread();
    std::unique_lock lock(mutex);
    --starting;
    while (!stopping) {
        ++idleThreads;
        const bool called =
            workCame.wait_for(lock, idleThreadLives, [this] { return stopping || !queue.empty(); });
        --idleThreads;
        if (!called || stopping)
            break;
        auto job = std::move(queue.front());
        queue.pop_front();

        lock.unlock();
        auto lane = laneOf(job.path);
        lock.lock();
        if (holdBack(job, lane))
            continue;

        const auto entry =
            running.insert(running.end(), RunningJob{std::move(lane), SteadyClock::now(), {}});
        lock.unlock();
        job.task();
        job.task = nullptr;
        lock.lock();
        if (!stopping)
            std::ranges::move(entry->waiting, std::back_inserter(queue));
        running.erase(entry);
        if (!stopping)
            staff();
    }
    --threads;
    threadEnded.notify_all();
}

void BackgroundPool::State::drop() {
    std::deque<Job> dropped;
    const std::lock_guard lock(mutex);
    stopping = true;
    dropped.swap(queue);
    workCame.notify_all();
}

BackgroundPool::BackgroundPool(LaneOf laneOf, std::chrono::milliseconds stuckAfter,
                               std::function<void()> prepareThread)
    : state_(std::make_shared<State>()) {
    state_->laneOf = std::move(laneOf);
    state_->stuckAfter = stuckAfter;
    state_->prepareThread = std::move(prepareThread);
}

BackgroundPool::~BackgroundPool() {
    state_->drop();
}

void BackgroundPool::execute(std::string path, Task task) {
    const std::lock_guard lock(state_->mutex);
    if (state_->stopping)
        return;
    state_->queue.push_back({std::move(path), std::move(task)});
    state_->staff();
}

BackgroundPool::ShutDown BackgroundPool::shutDown(std::chrono::milliseconds patience) {
    state_->drop();
    std::unique_lock lock(state_->mutex);
    const bool ended =
        state_->threadEnded.wait_for(lock, patience, [this] { return state_->threads == 0; });
    return ended ? ShutDown::complete : ShutDown::threadsLeft;
}

} // namespace fennik
