#pragma once

#include "core/base/Executor.h"

#include <chrono>
#include <memory>

namespace fennik {

/// One thread that runs tasks one after the other, in the order in which they came. It starts with
/// the first task. Where the system gives no thread, tasks wait, and every further one tries again.
class SerialWorker final : public Executor {
public:
    SerialWorker();
    /// Drops the tasks not yet begun and lets go of the thread without waiting for it.
    ~SerialWorker() override;
    SerialWorker(const SerialWorker&) = delete;
    SerialWorker& operator=(const SerialWorker&) = delete;

    void execute(Task task) override;

    /// Takes no further tasks and waits at most `patience` until all that came have run.
    ShutDown shutDown(std::chrono::milliseconds patience);

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace fennik
