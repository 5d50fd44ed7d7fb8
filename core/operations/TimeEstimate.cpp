#include "core/operations/TimeEstimate.h"

#include <algorithm>
#include <cmath>

namespace fennik {

namespace {

/// An item costs about as much time as moving so many bytes: opening, naming and closing a file
/// against its data, on solid, spinning and remote disks alike within a small factor.
constexpr double bytesPerItem = 256.0 * 1024;
constexpr double memory = 10; ///< seconds, after which the past counts for a third
constexpr TimeEstimate::Seconds spacing{0.05};
constexpr double firstSeconds = 1;
constexpr double absurdSeconds = 100.0 * 3600;

double work(double bytes, double items) {
    return bytes + items * bytesPerItem;
}

} // namespace

void TimeEstimate::record(Seconds elapsed, const Done& done) {
    const auto passed = elapsed - elapsed_;
    if (passed < spacing)
        return;
    const double kept = std::exp(-passed.count() / memory);
    seconds_ = seconds_ * kept + passed.count();
    bytes_ = bytes_ * kept + static_cast<double>(done.moved - done_.moved);
    items_ = items_ * kept + static_cast<double>(done.items - done_.items);
    elapsed_ = elapsed;
    done_ = done;
}

std::optional<double> TimeEstimate::secondsFor(std::int64_t bytes, std::int64_t items) const {
    const double done = work(bytes_, items_);
    if (seconds_ < firstSeconds || done <= 0)
        return std::nullopt;
    // Where files are cloned or renamed, their bytes cost no time, however many they are.
    const bool bytesAreFree = done_.moved == 0 && done_.accounted > 0;
    const double left =
        work(bytesAreFree ? 0 : static_cast<double>(std::max<std::int64_t>(bytes, 0)),
             static_cast<double>(std::max<std::int64_t>(items, 0)));
    const double seconds = left / done * seconds_;
    return seconds < absurdSeconds ? std::optional(seconds) : std::nullopt;
}

} // namespace fennik
