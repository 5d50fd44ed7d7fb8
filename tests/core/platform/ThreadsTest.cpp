#include "core/platform/Threads.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace fennik::test {

int niceness() {
    return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
}

TEST(ThreadsTest, aThreadGivesWayWithThoseItStartsAndNoOthers) {
    const int usual = niceness();
    int own = usual;
    int ofStarted = usual;
    std::thread([&] {
        Threads::giveWay();
        own = niceness();
        std::thread([&] { ofStarted = niceness(); }).join();
    }).join();
    EXPECT_GT(own, usual);
    EXPECT_EQ(ofStarted, own);
    EXPECT_EQ(niceness(), usual);
}

} // namespace fennik::test
