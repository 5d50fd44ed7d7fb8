#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace fennik {

/// Tells how long data has to wait so that it moves no faster than allowed. Used on one thread.
class Pacer {
public:
    using Duration = std::chrono::nanoseconds;

    /// No wait is longer, so that changes of the limit are soon felt.
    static constexpr std::chrono::milliseconds longestWait{500};

    /// `limit` in bytes a second, none: as fast as it goes. `elapsed` is the time at work, `moved`
    /// the bytes moved in it. Zero: go on. A limit counts from the last call without it, or from
    /// the beginning.
    Duration wait(std::optional<std::int64_t> limit, Duration elapsed, std::int64_t moved);

private:
    struct Point {
        Duration elapsed{};
        std::int64_t moved = 0;
    };
    std::optional<std::int64_t> limit_;
    Point begin_; ///< of the limit
    Point last_;  ///< what the last call said
};

} // namespace fennik
