#pragma once

#include "core/base/Executor.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace fennik {

/// Threads for work that waits for disks. A task never waits for another one's disk: when no thread
/// is idle, one more is started, and idle ones end after a while. The exception are lanes: when a
/// task has run for longer than `stuckAfter`, further tasks of the same lane wait until it
/// returns, so that a dead disk holds one thread and not one for every attempt. Where the system
/// gives no further thread, tasks wait for one that becomes free.
class BackgroundPool final : public DiskExecutor {
public:
    using LaneOf = std::function<std::string(const std::string& path)>;

    /// `laneOf` names the lane of a path; it runs on the pool's threads and must not wait. Each of
    /// these threads begins with `prepareThread`.
    explicit BackgroundPool(
        LaneOf laneOf, std::chrono::milliseconds stuckAfter = std::chrono::seconds(2),
        std::function<void()> prepareThread = [] {});
    /// Drops the tasks not yet begun and lets go of the threads without waiting for them.
    ~BackgroundPool() override;
    BackgroundPool(const BackgroundPool&) = delete;
    BackgroundPool& operator=(const BackgroundPool&) = delete;

    void execute(std::string path, Task task) override;

    using ShutDown = fennik::ShutDown;
    /// Drops the tasks not yet begun and waits at most `patience` for the running ones.
    ShutDown shutDown(std::chrono::milliseconds patience);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace fennik
