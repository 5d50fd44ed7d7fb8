#pragma once

#include <cstdint>
#include <limits>

namespace fennik {

/// Adds without ever passing the largest number: files with holes may claim any size, and a few of
/// them together more than fits. `count` is not negative.
inline void addClamped(std::int64_t& sum, std::int64_t count) {
    constexpr auto most = std::numeric_limits<std::int64_t>::max();
    sum = count > most - sum ? most : sum + count;
}

} // namespace fennik
