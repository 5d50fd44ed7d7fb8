#include "core/platform/FolderEvents.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

/// Counts calls from another thread. A call may still be under way when its watch is gone, and so
/// keeps what it touches.
class Calls {
public:
    std::function<void()> one() const {
        return [record = record_] {
            const std::lock_guard lock(record->mutex);
            record->times.push_back(SteadyClock::now());
            record->changed.notify_all();
        };
    }
    /// Calls that count and then wait until the gate is open.
    std::function<void()> oneAt(std::shared_ptr<std::mutex> gate) const {
        return [count = one(), gate = std::move(gate)] {
            count();
            const std::lock_guard pass(*gate);
        };
    }
    /// Waits until there were as many calls, for some seconds at most.
    bool reach(std::size_t count) const {
        std::unique_lock lock(record_->mutex);
        return record_->changed.wait_for(lock, 10s, [&] { return record_->times.size() >= count; });
    }
    std::vector<SteadyClock::time_point> times() const {
        const std::lock_guard lock(record_->mutex);
        return record_->times;
    }
    std::size_t count() const { return times().size(); }

private:
    struct Record {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<SteadyClock::time_point> times;
    };
    std::shared_ptr<Record> record_ = std::make_shared<Record>();
};

} // namespace

/// The real events of the system, with deadlines that a busy machine keeps as well.
class FolderEventsTest : public testing::Test {
protected:
    FolderEventsTest() {
        temp.folder("watched/inner");
        temp.folder("other");
    }

    std::unique_ptr<FolderEvents::Watch> watch(std::string_view name, const Calls& calls) {
        return events->watch(temp.path(name), calls.one());
    }
    /// Returns once all that happened before was told: a change elsewhere comes after it.
    void waitForWhatCame() {
        Calls marker;
        const auto watching = watch("other", marker);
        temp.file("other/marker " + std::to_string(++markers_));
        ASSERT_TRUE(marker.reach(1));
    }

    TempFolder temp;
    std::unique_ptr<FolderEvents> events = makeFolderEvents();

private:
    int markers_ = 0;
};

TEST_F(FolderEventsTest, oneActionIsOneCallAtOnce) {
    for (int attempt = 0; attempt < 20; ++attempt) {
        Calls calls;
        const auto watching = watch("watched", calls);
        ASSERT_TRUE(watching);
        const auto started = SteadyClock::now();
        temp.file("watched/" + std::to_string(attempt), "made, written and closed");
        const bool wasInterrupted = SteadyClock::now() - started > 5ms;
        ASSERT_TRUE(calls.reach(1));
        EXPECT_GE(calls.times().front() - started, 9ms);
        if (wasInterrupted)
            continue; // what a busy machine tears apart is more than one action
        waitForWhatCame();
        std::this_thread::sleep_for(300ms); // a second call would come when the interval is over
        EXPECT_EQ(calls.count(), 1U);
        return;
    }
    GTEST_SKIP() << "The machine is too busy.";
}

TEST_F(FolderEventsTest, everyKindOfChangeOfADirectChildCounts) {
    temp.file("watched/file");
    temp.file("other/from outside");
    const std::vector<std::function<void()>> changes{
        [&] { temp.file("watched/file", "written"); },
        [&] { chmod(temp.path("watched/file").c_str(), 0600); },
        [&] { std::filesystem::rename(temp.path("watched/file"), temp.path("watched/name")); },
        [&] { std::filesystem::rename(temp.path("other/from outside"), temp.path("watched/in")); },
        [&] { std::filesystem::rename(temp.path("watched/in"), temp.path("other/out")); },
        [&] { unlink(temp.path("watched/name").c_str()); },
        [&] { temp.folder("watched/folder"); },
        [&] { rmdir(temp.path("watched/folder").c_str()); },
        [&] { temp.link("watched/link", "nowhere"); },
        [&] { chmod(temp.path("watched").c_str(), 0700); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Calls calls;
        const auto watching = watch("watched", calls);
        ASSERT_TRUE(watching);
        changes[i]();
        EXPECT_TRUE(calls.reach(1)) << i;
    }
}

TEST_F(FolderEventsTest, whatHappensDeeperOrWithoutWritingDoesNotCount) {
    temp.file("watched/file", "data");
    Calls calls;
    const auto watching = watch("watched", calls);
    temp.file("watched/inner/new", "data");
    temp.folder("watched/inner/deep");
    std::string text;
    std::ifstream(temp.path("watched/file")) >> text;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::recursive_directory_iterator(temp.path("watched"))) {
    }
    waitForWhatCame();
    EXPECT_EQ(calls.count(), 0U);
}

TEST_F(FolderEventsTest, aLastCallTellsThatTheFolderItselfIsGone) {
    Calls deleted;
    const auto watchingDeleted = watch("watched/inner", deleted);
    rmdir(temp.path("watched/inner").c_str());
    EXPECT_TRUE(deleted.reach(1));

    Calls moved;
    const auto watchingMoved = watch("watched", moved);
    std::filesystem::rename(temp.path("watched"), temp.path("renamed"));
    EXPECT_TRUE(moved.reach(1));
}

TEST_F(FolderEventsTest, aStreamOfChangesIsToldInIntervals) {
    Calls calls;
    const auto watching = watch("watched", calls);
    const auto started = SteadyClock::now();
    constexpr int count = 20'000; // more than the kernel keeps for one reader
    for (int i = 0; i < count; ++i)
        temp.file("watched/" + std::to_string(i));
    const auto made = SteadyClock::now() - started;
    waitForWhatCame();
    std::this_thread::sleep_for(300ms);
    const auto times = calls.times();
    ASSERT_GE(times.size(), 1U);
    EXPECT_LE(times.size(), static_cast<std::size_t>(made / 250ms) + 3);
    for (std::size_t i = 1; i < times.size(); ++i)
        EXPECT_GE(times[i] - times[i - 1], 240ms);
}

TEST_F(FolderEventsTest, anOverflowIsAChangeOfEveryFolder) {
    Calls quiet;
    Calls busy;
    const auto watchingQuiet = watch("other", quiet);
    // Its call holds up the thread of the events until the kernel's queue is full.
    const auto gate = std::make_shared<std::mutex>();
    std::unique_lock closed(*gate);
    const auto watchingBusy = events->watch(temp.path("watched"), busy.oneAt(gate));
    temp.file("watched/first");
    ASSERT_TRUE(busy.reach(1));
    for (int i = 0; i < 10'000; ++i) {
        temp.file("watched/" + std::to_string(i));
        unlink(temp.path("watched/" + std::to_string(i)).c_str());
    }
    closed.unlock();
    EXPECT_TRUE(quiet.reach(1));
    EXPECT_TRUE(busy.reach(2));
}

TEST_F(FolderEventsTest, twoWatchesOfOneFolderDoNotTouchEachOther) {
    Calls first;
    Calls second;
    auto watchingFirst = watch("watched", first);
    const auto watchingSecond = watch("watched", second);
    temp.file("watched/a");
    EXPECT_TRUE(first.reach(1));
    EXPECT_TRUE(second.reach(1));
    watchingFirst.reset();
    temp.file("watched/b");
    EXPECT_TRUE(second.reach(2));
    EXPECT_EQ(first.count(), 1U);
}

TEST_F(FolderEventsTest, watchesThatComeAndGoAtOnceLoseNoChange) {
    const auto comeAndGo = [this](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            Calls calls;
            const auto watching = watch("watched", calls);
        }
    };
    const std::jthread left(comeAndGo);
    const std::jthread right(comeAndGo);
    for (int round = 0; round < 100; ++round) {
        Calls calls;
        const auto watching = watch("watched", calls);
        ASSERT_TRUE(watching);
        temp.file("watched/" + std::to_string(round));
        ASSERT_TRUE(calls.reach(1)) << round;
    }
}

TEST_F(FolderEventsTest, aWatchThatIsGoneIsSilentAlsoWhenItsEventsAreThereAlready) {
    // Another call holds up the thread of the events.
    Calls begun;
    const auto gate = std::make_shared<std::mutex>();
    std::unique_lock closed(*gate);
    const auto holding = events->watch(temp.path("watched/inner"), begun.oneAt(gate));
    temp.file("watched/inner/new");
    ASSERT_TRUE(begun.reach(1));
    Calls calls;
    {
        const auto watching = watch("watched", calls);
        temp.file("watched/new");
    }
    closed.unlock();
    waitForWhatCame();

    Calls deleting;
    std::unique_ptr<FolderEvents::Watch> watching;
    std::unique_lock assigning(*gate);
    watching = events->watch(temp.path("other"), [&] {
        {
            const std::lock_guard pass(*gate);
            watching.reset(); // from inside its own call
        }
        deleting.one()();
    });
    assigning.unlock();
    temp.file("other/new");
    ASSERT_TRUE(deleting.reach(1));
    EXPECT_EQ(calls.count(), 0U);
}

TEST_F(FolderEventsTest, watchesMayOutliveTheEvents) {
    Calls calls;
    const auto watching = watch("watched", calls);
    temp.file("watched/new");
    events.reset();
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(calls.count(), 0U);
}

TEST_F(FolderEventsTest, refusesWhatCannotBeWatched) {
    temp.file("file");
    Calls calls;
    EXPECT_FALSE(watch("missing", calls));
    EXPECT_FALSE(watch("file", calls));
    EXPECT_TRUE(asOrdinaryUser([] {
        while (inotify_init1(IN_CLOEXEC) >= 0) {
        }
        const auto exhausted = makeFolderEvents();
        return exhausted->watch("/", [] {}) == nullptr;
    }));
}

} // namespace fennik::test
