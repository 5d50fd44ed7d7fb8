#include "app/model/DirectoryWatcher.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using app::DirectoryWatcher;

/// The main thread, which here is the test's: tasks come from other threads and wait for it.
class WaitingExecutor final : public Executor {
public:
    void execute(Task task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        came_.notify_all();
    }
    /// Whether a task has come, within some seconds.
    bool hasWork() {
        std::unique_lock lock(mutex_);
        return came_.wait_for(lock, 10s, [this] { return !tasks_.empty(); });
    }
    void runAll() {
        std::deque<Task> tasks;
        {
            const std::lock_guard lock(mutex_);
            tasks.swap(tasks_);
        }
        for (auto& task : tasks)
            task();
    }

private:
    std::mutex mutex_;
    std::condition_variable came_;
    std::deque<Task> tasks_;
};

} // namespace

class DirectoryWatcherTest : public testing::Test {
protected:
    DirectoryWatcherTest() {
        temp.folder("watched/inner");
        temp.link("link", "watched");
    }
    std::shared_ptr<DirectoryWatcher> start(std::string_view name) {
        return DirectoryWatcher::start(*events, main, FileUrl(temp.path(name)),
                                       [this] { ++calls; });
    }

    TempFolder temp;
    WaitingExecutor main;
    std::unique_ptr<FolderEvents> events = makeFolderEvents();
    int calls = 0;
};

TEST_F(DirectoryWatcherTest, callsOnTheMainThreadOnceForAChange) {
    const auto watcher = start("watched");
    ASSERT_TRUE(watcher);
    temp.file("watched/new", "data");
    ASSERT_TRUE(main.hasWork());
    EXPECT_EQ(calls, 0) << "nothing runs on another thread";
    main.runAll();
    EXPECT_EQ(calls, 1);
}

TEST_F(DirectoryWatcherTest, aFolderReachedThroughALinkIsWatchedWhereItIs) {
    const auto watcher = start("link");
    ASSERT_TRUE(watcher);
    EXPECT_EQ(watcher->path(), temp.path("watched"));
    unlink(temp.path("link").c_str());
    temp.file("watched/new");
    EXPECT_TRUE(main.hasWork());
}

TEST_F(DirectoryWatcherTest, aChangeThatIsOnItsWayReachesNoWatcherThatWasDropped) {
    auto watcher = start("watched");
    temp.file("watched/new");
    ASSERT_TRUE(main.hasWork());
    watcher.reset();
    main.runAll();
    EXPECT_EQ(calls, 0);

    // The panel that reloads drops its watcher inside the call.
    std::shared_ptr<DirectoryWatcher> own;
    own = DirectoryWatcher::start(*events, main, FileUrl(temp.path("watched")), [&] {
        own.reset();
        ++calls;
    });
    temp.file("watched/newer");
    ASSERT_TRUE(main.hasWork());
    main.runAll();
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(own);
}

TEST_F(DirectoryWatcherTest, aWatcherThatTakesOverMissesNothing) {
    auto watcher = start("watched");
    for (int load = 0; load < 20; ++load) {
        watcher = start("watched");
        temp.file("watched/" + std::to_string(load));
        ASSERT_TRUE(main.hasWork()) << load;
        main.runAll();
    }
    EXPECT_EQ(calls, 20);
}

TEST_F(DirectoryWatcherTest, thereIsNoneWhereTheSystemRefuses) {
    EXPECT_FALSE(start("missing"));
    const auto watcher = start("watched/inner");
    std::filesystem::remove(temp.path("watched/inner"));
    EXPECT_TRUE(main.hasWork()) << "the folder's own end is a change";
    EXPECT_FALSE(start("watched/inner"));
}

} // namespace fennik::test
