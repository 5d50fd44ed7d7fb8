#include "core/operations/Pacer.h"

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;

} // namespace

TEST(PacerTest, makesDataWaitForWhatIsMissingAndNeverForLong) {
    Pacer pacer;
    EXPECT_EQ(pacer.wait(1000, 0s, 200), 200ms);
    EXPECT_EQ(pacer.wait(1000, 150ms, 200), 50ms);
    EXPECT_EQ(pacer.wait(1000, 3s, 2000), 0s);
    EXPECT_EQ(pacer.wait(1000, 3s, 1'000'000'000'000), Pacer::longestWait);
    EXPECT_EQ(pacer.wait(1, 3s, std::numeric_limits<std::int64_t>::max()), Pacer::longestWait);
}

TEST(PacerTest, aNewLimitNeitherPunishesNorRewardsWhatWentBefore) {
    Pacer pacer;
    EXPECT_EQ(pacer.wait(std::nullopt, 1s, 1'000'000), 0s);
    EXPECT_EQ(pacer.wait(1000, 1s, 1'000'100), 100ms);
    EXPECT_EQ(pacer.wait(std::nullopt, 1s, 1'000'100), 0s);
    EXPECT_EQ(pacer.wait(1'000'000, 100s, 1'000'100), 0s);
    EXPECT_EQ(pacer.wait(1000, 200s, 1'000'100), 0s);
    EXPECT_EQ(pacer.wait(1000, 200s, 1'100'100), 0s) << "a hundred seconds went by for it";
    EXPECT_EQ(pacer.wait(1000, 200s, 1'100'300), 200ms);
}

} // namespace fennik::test
