#pragma once

#include "core/base/Executor.h"

#include <deque>
#include <string>
#include <utility>

namespace fennik::test {

/// Keeps tasks until the test runs them.
class ManualExecutor final : public Executor, public DiskExecutor {
public:
    void execute(Task task) override { tasks_.push_back(std::move(task)); }
    void execute(std::string path, Task task) override {
        (path == stuck_ ? stuckTasks_ : tasks_).push_back(std::move(task));
    }

    /// Tasks for `path` do not run any more, until another path takes its place.
    void stick(std::string path) {
        stuck_ = std::move(path);
        for (auto& task : std::exchange(stuckTasks_, {}))
            tasks_.push_back(std::move(task));
    }

    bool isIdle() const { return tasks_.empty(); }
    std::size_t count() const { return tasks_.size(); }
    void runFirst() {
        auto task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
    void runLast() {
        auto task = std::move(tasks_.back());
        tasks_.pop_back();
        task();
    }
    void runAll() {
        while (!tasks_.empty())
            runFirst();
    }

private:
    std::deque<Task> tasks_;
    std::string stuck_;
    std::deque<Task> stuckTasks_;
};

} // namespace fennik::test
