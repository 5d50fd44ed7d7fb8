#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace fennik {

/// Waits on a condition until it is notified, or for that long. Tests turn a clock instead.
using TimedWait = std::function<void(std::condition_variable&, std::unique_lock<std::mutex>&,
                                     std::chrono::milliseconds)>;

} // namespace fennik
