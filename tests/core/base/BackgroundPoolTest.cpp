#include "core/base/BackgroundPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <semaphore>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;

std::string laneIsPath(const std::string& path) {
    return path;
}

/// A task that has begun and returns when it is told to.
struct HangingTask {
    std::binary_semaphore begun{0};
    std::binary_semaphore released{0};

    Task task() {
        return [this] {
            begun.release();
            released.acquire();
        };
    }
};

} // namespace

TEST(BackgroundPoolTest, aHangingTaskHoldsUpNoOther) {
    BackgroundPool pool(laneIsPath, 1h);
    HangingTask hanging;
    pool.execute("/dead", hanging.task());
    hanging.begun.acquire();
    for (int i = 0; i < 20; ++i) {
        std::promise<void> ran;
        pool.execute("/dead", [&ran] { ran.set_value(); });
        ASSERT_EQ(ran.get_future().wait_for(10s), std::future_status::ready);
    }
    hanging.released.release();
    EXPECT_EQ(pool.shutDown(10s), BackgroundPool::ShutDown::complete);
}

TEST(BackgroundPoolTest, attemptsOnAStuckLaneWaitForItAndOtherLanesDoNot) {
    BackgroundPool pool(laneIsPath, 0ms);
    HangingTask hanging;
    pool.execute("/dead", hanging.task());
    hanging.begun.acquire();

    std::atomic<int> attempts = 0;
    std::promise<void> allRan;
    for (int i = 0; i < 5; ++i)
        pool.execute("/dead", [&] {
            if (++attempts == 5)
                allRan.set_value();
        });
    std::promise<void> otherRan;
    pool.execute("/alive", [&otherRan] { otherRan.set_value(); });
    ASSERT_EQ(otherRan.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(attempts, 0);

    hanging.released.release();
    ASSERT_EQ(allRan.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(pool.shutDown(10s), BackgroundPool::ShutDown::complete);
}

TEST(BackgroundPoolTest, shutDownGivesUpOnAHangingTaskAndDropsWhatWaits) {
    BackgroundPool pool(laneIsPath, 0ms);
    HangingTask hanging;
    pool.execute("/dead", hanging.task());
    hanging.begun.acquire();
    std::atomic<bool> ran = false;
    pool.execute("/dead", [&ran] { ran = true; });

    EXPECT_EQ(pool.shutDown(20ms), BackgroundPool::ShutDown::threadsLeft);
    hanging.released.release();
    EXPECT_EQ(pool.shutDown(10s), BackgroundPool::ShutDown::complete);
    EXPECT_FALSE(ran);
}

} // namespace fennik::test
