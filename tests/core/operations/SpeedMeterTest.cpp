#include "core/operations/SpeedMeter.h"

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;

constexpr SpeedMeter::TimePoint start{1000s};

} // namespace

TEST(SpeedMeterTest, isNotKnownBeforeAFifthOfASecond) {
    SpeedMeter speed;
    speed.restart(start, 0);
    speed.record(start + 200ms, 1000);
    EXPECT_EQ(speed.bytesPerSecond(), 0);
    speed.record(start + 250ms, 1000);
    EXPECT_DOUBLE_EQ(speed.bytesPerSecond(), 4000);
}

TEST(SpeedMeterTest, forgetsWhatIsOlderThanThreeSeconds) {
    SpeedMeter speed;
    speed.restart(start, 0);
    std::int64_t bytes = 0;
    for (auto time = 100ms; time <= 2000ms; time += 100ms)
        speed.record(start + time, bytes += 100'000);
    EXPECT_DOUBLE_EQ(speed.bytesPerSecond(), 1'000'000);
    for (auto time = 2100ms; time <= 5000ms; time += 100ms)
        speed.record(start + time, bytes += 100);
    EXPECT_DOUBLE_EQ(speed.bytesPerSecond(), 1000);
}

TEST(SpeedMeterTest, isRightForLumpsThatAreFarApart) {
    SpeedMeter speed;
    speed.restart(start, 0);
    for (int lump = 1; lump <= 4; ++lump)
        speed.record(start + lump * 8s, lump * 8000);
    EXPECT_DOUBLE_EQ(speed.bytesPerSecond(), 1000);
}

TEST(SpeedMeterTest, startsAfreshAfterAPause) {
    SpeedMeter speed;
    speed.restart(start, 0);
    speed.record(start + 1s, 1'000'000);
    speed.restart(start + 60s, 1'000'000);
    EXPECT_EQ(speed.bytesPerSecond(), 0);
    speed.record(start + 61s, 1'002'000);
    EXPECT_DOUBLE_EQ(speed.bytesPerSecond(), 2000);
}

} // namespace fennik::test
