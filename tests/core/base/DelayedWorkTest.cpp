#include "core/base/DelayedWork.h"
#include "tests/support/ManualTimers.h"

#include <gtest/gtest.h>

#include <optional>

namespace fennik::test {

using std::chrono::milliseconds;

TEST(DelayedWork, runsTheLastOfSeveralTasksOnce) {
    ManualTimers timers;
    DelayedWork work(timers);
    std::string ran;
    work.schedule(milliseconds(300), [&] { ran += "first "; });
    timers.pass(milliseconds(200));
    work.schedule(milliseconds(300), [&] { ran += "second "; });
    timers.pass(milliseconds(299));
    EXPECT_EQ(ran, "");
    EXPECT_TRUE(work.isPending());
    timers.pass(milliseconds(1));
    EXPECT_EQ(ran, "second ");
    EXPECT_FALSE(work.isPending());
    timers.pass(milliseconds(1000));
    EXPECT_EQ(ran, "second ");
}

TEST(DelayedWork, runsNothingOnceCancelledRunOrGone) {
    ManualTimers timers;
    std::optional<DelayedWork> work(timers);
    int runs = 0;
    work->schedule(milliseconds(10), [&] { ++runs; });
    work->cancel();
    work->runNow();
    EXPECT_EQ(runs, 0);
    work->schedule(milliseconds(10), [&] { ++runs; });
    work->runNow();
    EXPECT_EQ(runs, 1);
    work->schedule(milliseconds(10), [&] { ++runs; });
    work.reset();
    timers.pass(milliseconds(100));
    EXPECT_EQ(runs, 1);
}

} // namespace fennik::test
