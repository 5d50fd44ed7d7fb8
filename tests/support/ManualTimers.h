#pragma once

#include "core/base/DelayedWork.h"

#include <chrono>
#include <map>
#include <utility>

namespace fennik::test {

/// Delayed tasks, and a clock that stands still until the test moves it on.
class ManualTimers final : public DelayedExecutor {
public:
    std::chrono::steady_clock::time_point now() const { return now_; }

    void executeAfter(std::chrono::milliseconds delay, Task task) override {
        tasks_.emplace(now_ + delay, std::move(task));
    }
    /// Moves the clock on and runs what is due, in order.
    void pass(std::chrono::milliseconds time) {
        const auto end = now_ + time;
        while (!tasks_.empty() && tasks_.begin()->first <= end) {
            now_ = tasks_.begin()->first;
            auto task = std::move(tasks_.extract(tasks_.begin()).mapped());
            task();
        }
        now_ = end;
    }

private:
    std::chrono::steady_clock::time_point now_;
    std::multimap<std::chrono::steady_clock::time_point, Task> tasks_;
};

} // namespace fennik::test
