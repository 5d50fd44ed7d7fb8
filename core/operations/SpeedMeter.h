#pragma once

#include <chrono>
#include <cstdint>
#include <deque>

namespace fennik {

/// How fast data moves, as the last three seconds have it. Used on one thread.
class SpeedMeter {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Forgets what was; the speed is 0 until more is known.
    void restart(TimePoint now, std::int64_t bytes);
    /// `bytes` is the sum of all that has been moved so far.
    void record(TimePoint now, std::int64_t bytes);
    double bytesPerSecond() const { return bytesPerSecond_; }

private:
    struct Sample {
        TimePoint time = {};
        std::int64_t bytes = 0;
    };
    std::deque<Sample> samples_; ///< oldest first
    double bytesPerSecond_ = 0;
};

} // namespace fennik
