#pragma once

#include "core/base/DelayedWork.h"

namespace fennik::system {

/// Runs tasks on the main thread, in the event loop. Tasks that come after the loop's end are
/// dropped.
class MainThread final : public Executor, public DelayedExecutor {
public:
    void execute(Task task) override;
    void executeAfter(std::chrono::milliseconds delay, Task task) override;
};

} // namespace fennik::system
