#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace fennik {

/// How long the rest of some work will take, from what the last ten seconds or so have managed:
/// bytes and items together, as thousands of tiny files cost time that their bytes do not show.
/// Used on one thread.
class TimeEstimate {
public:
    using Seconds = std::chrono::duration<double>;

    /// All since the beginning.
    struct Done {
        std::int64_t moved = 0;     ///< bytes of data
        std::int64_t accounted = 0; ///< bytes that did not have to be moved
        std::int64_t items = 0;
    };
    /// `elapsed` is the time at work.
    void record(Seconds elapsed, const Done& done);
    /// None in the first second, while nothing gets on, and where the time would be absurd.
    std::optional<double> secondsFor(std::int64_t bytes, std::int64_t items) const;

private:
    Seconds elapsed_{};
    Done done_;
    // What counts of the past, the more the younger it is.
    double seconds_ = 0;
    double bytes_ = 0;
    double items_ = 0;
};

} // namespace fennik
