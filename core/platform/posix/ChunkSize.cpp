#include "core/platform/posix/ChunkSize.h"

#include <algorithm>

namespace fennik {

void ChunkSize::took(std::int64_t moved, std::chrono::nanoseconds time) {
    constexpr double wanted = std::chrono::nanoseconds(std::chrono::milliseconds(50)).count();
    const auto nanoseconds = static_cast<double>(std::max<std::int64_t>(time.count(), 1));
    // Growing by steps: the first chunks only go to memory, whatever the medium can do.
    const double fitting = std::min(static_cast<double>(moved) * wanted / nanoseconds,
                                    static_cast<double>(bytes_) * 2);
    bytes_ = std::clamp(static_cast<std::int64_t>(fitting), least, most);
}

} // namespace fennik
