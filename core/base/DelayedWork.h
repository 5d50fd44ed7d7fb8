#pragma once

#include "core/base/Executor.h"

#include <chrono>
#include <memory>

namespace fennik {

/// Runs tasks on the main thread after a delay. Tests turn its clock by hand.
class DelayedExecutor {
public:
    virtual ~DelayedExecutor() = default;
    /// Takes `task` over and returns at once. Call on the main thread.
    virtual void executeAfter(std::chrono::milliseconds delay, Task task) = 0;
};

/// One task that is going to run after a delay, unless another takes its place, it is cancelled, or
/// this object is gone by then. Main thread only.
class DelayedWork {
public:
    /// `executor` outlives this object.
    explicit DelayedWork(DelayedExecutor& executor) : executor_(executor) {}

    void schedule(std::chrono::milliseconds delay, Task task);
    void cancel() { pending_.reset(); }
    bool isPending() const { return pending_ != nullptr; }
    /// Runs the pending task now.
    void runNow();

private:
    DelayedExecutor& executor_;
    std::shared_ptr<Task> pending_;
};

} // namespace fennik
