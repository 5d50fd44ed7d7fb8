#include "core/base/DelayedWork.h"

#include <utility>

namespace fennik {

void DelayedWork::schedule(std::chrono::milliseconds delay, Task task) {
    pending_ = std::make_shared<Task>(std::move(task));
    executor_.executeAfter(delay, [this, waiting = std::weak_ptr(pending_)] {
        if (!waiting.expired())
            runNow();
    });
}

void DelayedWork::runNow() {
    // The task may schedule the next one.
    if (const auto task = std::exchange(pending_, nullptr))
        (*task)();
}

} // namespace fennik
