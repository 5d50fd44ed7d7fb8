#include "core/base/CurrentDate.h"

#include <chrono>

namespace fennik {

Date currentDate() {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
    const std::chrono::nanoseconds rest = since - seconds;
    return {seconds.count(), static_cast<std::uint32_t>(rest.count())};
}

} // namespace fennik
