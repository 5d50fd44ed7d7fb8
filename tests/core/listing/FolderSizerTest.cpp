#include "core/listing/FolderSizer.h"

#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <latch>
#include <ostream>
#include <semaphore>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fennik {

void PrintTo(const FolderSizer::Result& result, std::ostream* out) {
    *out << result.bytes << " bytes, " << result.files << " files, " << result.folders
         << " folders";
}

} // namespace fennik

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using FolderSizer::Result;
using SteadyClock = std::chrono::steady_clock;

bool never() {
    return false;
}

/// Says when its thread ends.
struct ThreadEnd {
    std::binary_semaphore* told = nullptr;
    ~ThreadEnd() {
        if (told != nullptr)
            told->release();
    }
};
thread_local ThreadEnd threadEnd;

} // namespace

class FolderSizerTest : public testing::Test {
protected:
    std::optional<Result> size(std::string_view name = {}) const {
        const auto folder = name.empty() ? temp.url() : FileUrl(temp.path(name));
        return FolderSizer::size(files, folder, never);
    }
    /// Makes enough folders for two threads, each with one file of one byte.
    void makeManyFolders(int count) const {
        for (int i = 0; i < count; ++i) {
            const auto name = "many/" + std::to_string(i % 10) + "/" + std::to_string(i);
            temp.folder(name);
            temp.file(name + "/file", "x");
        }
    }

    TempFolder temp;
    FaultyFileSystem files;
};

TEST_F(FolderSizerTest, addsUpDataFilesAndFolders) {
    temp.file("a", std::string(10, 'a'));
    temp.file(".hidden", std::string(20, 'b'));
    temp.folder("Empty.app");
    EXPECT_EQ(size(), (Result{30, 2, 1}));

    temp.folder("large");
    temp.file("large/data", std::string(1000, 'c'));
    temp.link("link", "large");
    temp.link("loop", ".");
    mkfifo(temp.path("pipe").c_str(), 0600);
    EXPECT_EQ(size(), (Result{1030, 6, 2}));
    EXPECT_EQ(size("link"), (Result{1000, 1, 0})) << "the root may be reached through a link";

    files.fail(FaultyFileSystem::Call::readSizes, ENOTSUP);
    EXPECT_EQ(size(), (Result{1030, 6, 2})) << "the ordinary reading sees the same";
    files.fail(FaultyFileSystem::Call::readFolder, ENOTSUP);
    EXPECT_EQ(size(), (Result{1030, 6, 2}));
}

TEST_F(FolderSizerTest, twoThreadsCountEveryFolderOnce) {
    makeManyFolders(600);
    const auto self = std::this_thread::get_id();
    std::counting_semaphore<> otherReads{0};
    int reads = 0;
    bool othersRead = false;
    files.beforeReadSizes([&](const std::string&) {
        if (std::this_thread::get_id() != self)
            otherReads.release();
        else if (++reads == 100)
            othersRead = otherReads.try_acquire_for(10s);
    });
    EXPECT_EQ(size(), (Result{600, 600, 611}));
    EXPECT_TRUE(othersRead);
    files.beforeReadSizes([](const std::string&) {});
    for (int round = 0; round < 20; ++round)
        EXPECT_EQ(size(), (Result{600, 600, 611}));
}

TEST_F(FolderSizerTest, oneThreadDoesItAllWhereThereIsNoOther) {
    makeManyFolders(600);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NPROC, &none);
        return size() == Result{600, 600, 611};
    }));
}

TEST_F(FolderSizerTest, whatCannotBeReadIsSkippedAndAnUnreadableRootHasNoSize) {
    temp.folder("locked/inner");
    temp.file("locked/file", "123");
    temp.folder("half");
    temp.file("half/file", "123");
    temp.file("file", "1");
    chmod(temp.path("locked").c_str(), 0);
    chmod(temp.path("half").c_str(), 0444);
    EXPECT_TRUE(asOrdinaryUser([this] {
        // The names in "half" can be read, their sizes cannot.
        return size() == Result{1, 2, 2} && !size("locked");
    }));
    chmod(temp.path("locked").c_str(), 0755);
    EXPECT_EQ(size("missing"), std::nullopt);
    EXPECT_EQ(size("file"), std::nullopt);
}

TEST_F(FolderSizerTest, treesDeeperThanAnyPathEndCleanlyWithFewDescriptors) {
    const auto start = std::filesystem::current_path();
    std::filesystem::current_path(temp.url().path());
    const std::string name(20, 'd');
    for (int level = 0; level < 300; ++level) {
        ASSERT_EQ(mkdir(name.c_str(), 0755), 0);
        ASSERT_EQ(chdir(name.c_str()), 0);
    }
    std::filesystem::current_path(start);
    makeManyFolders(200);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const rlimit few{64, 64};
        setrlimit(RLIMIT_NOFILE, &few);
        const auto result = size();
        const auto deepest = static_cast<std::int64_t>(4096 - temp.url().path().size()) / 21;
        return result && result->files == 200 && result->folders - 211 >= deepest - 1 &&
               result->folders - 211 <= deepest + 1;
    }));
    // Removed from the inside, as no path reaches the end.
    EXPECT_EQ(std::system(("rm -rf '" + temp.path(name) + "'").c_str()), 0);
}

TEST_F(FolderSizerTest, skippedFoldersAreNotEntered) {
    temp.folder("mount/inner");
    temp.file("mount/file", "123");
    temp.folder("mounted");
    std::atomic<int> entered = 0;
    files.beforeReadSizes([&](const std::string& path) { entered += path.ends_with("mount"); });
    EXPECT_EQ(FolderSizer::size(files, temp.url(), never, {temp.path("mount")}), (Result{0, 0, 2}));
    EXPECT_EQ(entered, 0);
}

TEST_F(FolderSizerTest, theKernelsOwnFoldersHaveAnEnd) {
    EXPECT_TRUE(FolderSizer::size(files, FileUrl("/proc/self"), never));
    EXPECT_TRUE(FolderSizer::size(files, FileUrl("/sys/kernel"), never));
}

TEST_F(FolderSizerTest, cancellingEndsAlsoInsideOneGiantFolder) {
    temp.folder("giant");
    for (int i = 0; i < 2'000; ++i)
        temp.file("giant/" + std::to_string(i));
    int looks = 0;
    const auto isCancelled = [&looks] { return ++looks >= 5; };
    EXPECT_EQ(FolderSizer::size(files, FileUrl(temp.path("giant")), isCancelled), std::nullopt);
    EXPECT_EQ(looks, 5);
    EXPECT_EQ(FolderSizer::size(files, temp.url(), [] { return true; }), std::nullopt);
}

TEST_F(FolderSizerTest, tellsWhatItHasFoundSoFar) {
    for (const auto* name : {"a/1/x", "b/1/x"})
        temp.folder(name);
    temp.file("a/file", "data");
    files.beforeReadSizes([](const std::string&) { std::this_thread::sleep_for(60ms); });
    std::vector<Result> told;
    const auto whole = FolderSizer::size(files, temp.url(), never, {},
                                         [&](const Result& soFar) { told.push_back(soFar); });
    EXPECT_EQ(whole, (Result{4, 1, 6}));
    ASSERT_GE(told.size(), 2U);
    EXPECT_GT(told.front().folders, 0);
    EXPECT_LE(told.front().folders, told.back().folders);
    EXPECT_LE(told.back().folders, 6);
}

TEST_F(FolderSizerTest, aSecondThreadThatHangsIsLeftBehindAfterACancellation) {
    makeManyFolders(500);
    const auto self = std::this_thread::get_id();
    std::latch hangs(1);
    std::binary_semaphore released{0};
    std::binary_semaphore left{0};
    std::atomic<int> readsOfOther = 0;
    int reads = 0;
    files.beforeReadSizes([&](const std::string&) {
        if (std::this_thread::get_id() == self) {
            if (++reads == 100)
                hangs.wait(); // the other one may be slow to begin
            return;
        }
        if (++readsOfOther > 1)
            return;
        threadEnd.told = &left;
        hangs.count_down();
        released.acquire();
    });
    std::atomic<bool> isCancelled = false;
    SteadyClock::time_point cancelled;
    const std::jthread canceller([&] {
        hangs.wait();
        std::this_thread::sleep_for(50ms); // the first thread has done the rest and waits
        cancelled = SteadyClock::now();
        isCancelled = true;
    });
    EXPECT_EQ(FolderSizer::size(files, temp.url(), [&] { return isCancelled.load(); }),
              std::nullopt);
    EXPECT_LT(SteadyClock::now() - cancelled, 1s);

    released.release();
    ASSERT_TRUE(left.try_acquire_for(10s));
    EXPECT_EQ(readsOfOther, 1) << "it begins nothing more";
}

} // namespace fennik::test
