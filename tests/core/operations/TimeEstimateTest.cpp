#include "core/operations/TimeEstimate.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using testing::AllOf;
using testing::DoubleNear;
using testing::Ge;
using testing::Le;
using testing::Optional;

/// Plays a job whose files take the given time, and tells what was estimated on the way.
struct Play {
    std::int64_t totalBytes = 0;
    std::int64_t totalItems = 0;
    TimeEstimate estimate = {};
    TimeEstimate::Done done = {};
    double time = 0;

    void move(std::int64_t bytes, double seconds) {
        time += seconds;
        done.moved += bytes;
        estimate.record(TimeEstimate::Seconds(time), done);
    }
    void account(std::int64_t bytes) { done.accounted += bytes; }
    void finishItem(double seconds) {
        time += seconds;
        ++done.items;
        estimate.record(TimeEstimate::Seconds(time), done);
    }
    std::optional<double> left() const {
        return estimate.secondsFor(totalBytes - done.moved - done.accounted,
                                   totalItems - done.items);
    }
};

constexpr std::int64_t mebibyte = 1 << 20;

} // namespace

TEST(TimeEstimateTest, isExactForOneHugeFile) {
    Play play{.totalBytes = 10'000 * mebibyte, .totalItems = 1};
    for (int chunk = 0; chunk < 9; ++chunk) {
        EXPECT_EQ(play.left(), std::nullopt);
        play.move(10 * mebibyte, 0.1);
    }
    for (int chunk = 9; chunk < 1000; ++chunk) {
        play.move(10 * mebibyte, 0.1);
        if (play.time > 1.01) {
            ASSERT_THAT(play.left(), Optional(DoubleNear(100 - play.time, 1)));
        }
    }
}

TEST(TimeEstimateTest, isExactForThousandsOfTinyFiles) {
    Play play{.totalBytes = 20'000 * 500, .totalItems = 20'000};
    for (int item = 0; item < 20'000; ++item) {
        play.move(item % 2 * 1000, 0.0005);
        play.finishItem(0.0005);
        if (play.time > 1.1) {
            ASSERT_THAT(play.left(), Optional(DoubleNear(20 - play.time, 0.5)));
        }
    }
}

TEST(TimeEstimateTest, staysReasonableWhenTinyFilesAreFollowedByAHugeOne) {
    // On a fast disk, where an item costs a tenth of a millisecond and a mebibyte a whole one.
    Play play{.totalBytes = 20'000 * 1000 + 10'000 * mebibyte, .totalItems = 20'001};
    const double whole = 20'000 * 0.0001 + 10'000 * 0.001;
    const auto check = [&] {
        const double rest = whole - play.time;
        if (play.time > 1.1) {
            ASSERT_THAT(play.left(), Optional(AllOf(Ge(rest / 3 - 0.1), Le(rest * 3 + 0.1))));
        }
    };
    for (int item = 0; item < 20'000; ++item) {
        play.move(1000, 0.00005);
        play.finishItem(0.00005);
        check();
    }
    for (int chunk = 0; chunk < 1250; ++chunk) {
        play.move(8 * mebibyte, 0.008);
        check();
    }
}

TEST(TimeEstimateTest, bytesThatWereSkippedShortenTheRestButQuickenNothing) {
    Play play{.totalBytes = 20'000 * mebibyte, .totalItems = 20};
    for (int chunk = 0; chunk < 20; ++chunk)
        play.move(10 * mebibyte, 0.1);
    play.account(9'800 * mebibyte);
    play.move(10 * mebibyte, 0.1);
    EXPECT_THAT(play.left(), Optional(DoubleNear(100, 2)));
}

TEST(TimeEstimateTest, bytesOfClonedFilesTakeNoTime) {
    Play play{.totalBytes = 4000LL * 1000 * mebibyte, .totalItems = 4000};
    for (int item = 0; item < 2000; ++item) {
        play.account(1000 * mebibyte);
        play.finishItem(0.001);
    }
    EXPECT_THAT(play.left(), Optional(DoubleNear(2, 0.1)));
}

TEST(TimeEstimateTest, saysNothingWhereNothingGetsOnOrTheTimeIsAbsurd) {
    Play still{.totalBytes = 1000, .totalItems = 10};
    still.move(0, 5);
    EXPECT_EQ(still.left(), std::nullopt);

    Play crawling{.totalBytes = 1'000'000 * mebibyte, .totalItems = 1};
    for (int chunk = 0; chunk < 10; ++chunk)
        crawling.move(1, 1);
    EXPECT_EQ(crawling.left(), std::nullopt);

    Play over{.totalBytes = 10, .totalItems = 1};
    over.move(1'000'000, 2); // the file has grown meanwhile
    over.finishItem(0.1);
    EXPECT_EQ(over.left(), 0);
}

} // namespace fennik::test
