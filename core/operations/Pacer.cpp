#include "core/operations/Pacer.h"

#include <algorithm>
#include <utility>

namespace fennik {

Pacer::Duration Pacer::wait(std::optional<std::int64_t> limit, Duration elapsed,
                            std::int64_t moved) {
    const Point last = std::exchange(last_, {elapsed, moved});
    if (limit != limit_) {
        // What was moved under another limit is neither owed nor saved up.
        limit_ = limit;
        begin_ = last;
    }
    if (!limit_)
        return {};
    const std::chrono::duration<double> due{static_cast<double>(moved - begin_.moved) /
                                            static_cast<double>(*limit_)};
    const auto missing = due - (elapsed - begin_.elapsed);
    if (missing >= longestWait)
        return longestWait;
    return std::max(std::chrono::duration_cast<Duration>(missing), Duration::zero());
}

} // namespace fennik
