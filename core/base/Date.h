#pragma once

#include <compare>
#include <cstdint>
#include <limits>

namespace fennik {

/// A point in time as file systems keep it: whole seconds since 1970-01-01 UTC (negative before)
/// and nanoseconds within that second, 0 to 999,999,999. Exact; ordered by time.
struct Date {
    std::int64_t seconds = 0;
    std::uint32_t nanoseconds = 0;

    /// The date of things whose date is not known; before every other date.
    static constexpr Date distantPast() { return {std::numeric_limits<std::int64_t>::min(), 0}; }

    friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

} // namespace fennik
