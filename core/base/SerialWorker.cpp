#include "core/base/SerialWorker.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace fennik {

/// Shared with the thread, which is detached: when it hangs in a system call for ever, it must not
/// be waited for.
struct SerialWorker::State : std::enable_shared_from_this<SerialWorker::State> {
    std::mutex mutex;
    std::condition_variable workCame;
    std::condition_variable threadEnded;
    std::deque<Task> queue;
    bool hasThread = false;
    bool stopping = false;

    void work();
    /// Call with the lock held.
    void staff();
};

void SerialWorker::State::work() {
    std::unique_lock lock(mutex);
    while (true) {
        workCame.wait(lock, [this] { return stopping || !queue.empty(); });
        if (queue.empty())
            break;
        auto task = std::move(queue.front());
        queue.pop_front();
        lock.unlock();
        task();
        task = nullptr;
        lock.lock();
    }
    hasThread = false;
    threadEnded.notify_all();
}

void SerialWorker::State::staff() {
    workCame.notify_one();
    if (hasThread || queue.empty())
        return;
    try {
        std::thread([state = shared_from_this()] { state->work(); }).detach();
        hasThread = true;
    } catch (const std::system_error&) {
        return; // the next task tries again
    }
}

SerialWorker::SerialWorker() : state_(std::make_shared<State>()) {}

SerialWorker::~SerialWorker() {
    std::deque<Task> dropped;
    const std::lock_guard lock(state_->mutex);
    state_->stopping = true;
    dropped.swap(state_->queue);
    state_->workCame.notify_one();
}

void SerialWorker::execute(Task task) {
    const std::lock_guard lock(state_->mutex);
    if (state_->stopping)
        return;
    state_->queue.push_back(std::move(task));
    state_->staff();
}

ShutDown SerialWorker::shutDown(std::chrono::milliseconds patience) {
    std::unique_lock lock(state_->mutex);
    state_->stopping = true;
    state_->staff();
    const bool ended =
        state_->threadEnded.wait_for(lock, patience, [this] { return !state_->hasThread; });
    return ended && state_->queue.empty() ? ShutDown::complete : ShutDown::threadsLeft;
}

} // namespace fennik
