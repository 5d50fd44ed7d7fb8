#pragma once

#include "core/base/Executor.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

namespace fennik::test {

/// Keeps tasks until the test runs them. Tasks may come from any thread.
class ManualExecutor final : public Executor, public DiskExecutor {
public:
    void execute(Task task) override {
        const std::lock_guard guard(lock_);
        tasks_.push_back(std::move(task));
        come_.notify_all(); // with the lock held: whoever finds the task may end this object
    }
    void execute(std::string path, Task task) override {
        if (path == stuck_)
            stuckTasks_.push_back(std::move(task));
        else
            execute(std::move(task));
    }

    /// Tasks for `path` do not run any more, until another path takes its place.
    void stick(std::string path) {
        stuck_ = std::move(path);
        for (auto& task : std::exchange(stuckTasks_, {}))
            execute(std::move(task));
    }

    bool isIdle() const { return count() == 0; }
    std::size_t count() const {
        const std::lock_guard guard(lock_);
        return tasks_.size();
    }
    /// Waits until there is a task. False when none has come after a long time.
    bool await() {
        std::unique_lock guard(lock_);
        return come_.wait_for(guard, std::chrono::seconds(20), [this] { return !tasks_.empty(); });
    }
    void runFirst() { take(0)(); }
    void runLast() { take(count() - 1)(); }
    void runAll() {
        while (!isIdle())
            runFirst();
    }

private:
    Task take(std::size_t index) {
        const std::lock_guard guard(lock_);
        const auto place = tasks_.begin() + static_cast<std::ptrdiff_t>(index);
        auto task = std::move(*place);
        tasks_.erase(place);
        return task;
    }

    mutable std::mutex lock_; ///< guards the tasks
    std::condition_variable come_;
    std::deque<Task> tasks_;
    std::string stuck_;
    std::deque<Task> stuckTasks_;
};

} // namespace fennik::test
