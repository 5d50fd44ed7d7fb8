#include "core/base/SerialWorker.h"

#include <gmock/gmock.h>

#include <future>
#include <numeric>
#include <semaphore>
#include <vector>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;

} // namespace

TEST(SerialWorkerTest, runsTasksInOrderAndAllOfThemBeforeItsEnd) {
    SerialWorker worker;
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    std::vector<int> ran; // reached by one thread after the other only
    for (const int number : expected)
        worker.execute([&ran, number] { ran.push_back(number); });
    EXPECT_EQ(worker.shutDown(10s), ShutDown::complete);
    EXPECT_EQ(ran, expected);

    worker.execute([&ran] { ran.clear(); });
    EXPECT_EQ(worker.shutDown(10s), ShutDown::complete);
    EXPECT_EQ(ran, expected);
}

TEST(SerialWorkerTest, aHangingTaskIsNotWaitedForLongerThanThePatience) {
    std::binary_semaphore begun{0};
    std::binary_semaphore released{0};
    std::promise<void> ranAfterwards;
    SerialWorker worker;
    worker.execute([&] {
        begun.release();
        released.acquire();
    });
    worker.execute([&] { ranAfterwards.set_value(); });
    begun.acquire();
    EXPECT_EQ(worker.shutDown(20ms), ShutDown::threadsLeft);

    released.release();
    EXPECT_EQ(ranAfterwards.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(worker.shutDown(10s), ShutDown::complete);
}

} // namespace fennik::test
