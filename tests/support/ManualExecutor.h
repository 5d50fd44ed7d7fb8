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
    void execute(std::string, Task task) override { tasks_.push_back(std::move(task)); }

    bool isIdle() const { return tasks_.empty(); }
    void runLast() {
        auto task = std::move(tasks_.back());
        tasks_.pop_back();
        task();
    }
    void runAll() {
        while (!tasks_.empty()) {
            auto task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        }
    }

private:
    std::deque<Task> tasks_;
};

} // namespace fennik::test
