#include "core/operations/SpeedMeter.h"

namespace fennik {

namespace {

using namespace std::chrono_literals;

constexpr auto window = 3s;
/// What happened in less time says nothing about the speed.
constexpr auto shortest = 200ms;
/// Many small files make many calls; samples closer than this tell nothing new.
constexpr auto spacing = 50ms;

} // namespace

void SpeedMeter::restart(TimePoint now, std::int64_t bytes) {
    samples_.assign({{now, bytes}});
    bytesPerSecond_ = 0;
}

void SpeedMeter::record(TimePoint now, std::int64_t bytes) {
    // The youngest of the samples that are too old stays: where data comes in lumps, seconds apart,
    // there would be nothing else to compare with.
    while (samples_.size() >= 2 && now - samples_[1].time >= window)
        samples_.pop_front();
    if (samples_.empty() || now - samples_.back().time >= spacing)
        samples_.push_back({now, bytes});

    const auto& oldest = samples_.front();
    if (const auto age = now - oldest.time; age > shortest)
        bytesPerSecond_ =
            static_cast<double>(bytes - oldest.bytes) / std::chrono::duration<double>(age).count();
}

} // namespace fennik
