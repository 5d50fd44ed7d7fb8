#include "core/base/SerialWorker.h"
#include "core/operations/TransferEngine.h"
#include "tests/support/DiskTree.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <semaphore>
#include <thread>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using testing::AnyOf;
using State = JobSnapshot::State;
using Tree = std::map<std::string, std::string>;

/// Jobs on a real disk that are cancelled at some moment or other.
class RandomCancelTest : public testing::Test {
protected:
    RandomCancelTest() {
        source.folder("tree");
        source.folder("tree/many");
        source.file("tree/large", std::string(9 << 20, 'x')); // in more than one chunk
        for (int number = 0; number < 20; ++number)
            source.file("tree/many/" + std::to_string(number), std::string(20'000, 'y'));
        engine.setThrottle(1 << 30); // the large file takes a hundredth of a second
        engine.setOnJobFinished([this](const JobSnapshot& job, const TransferRequest&) {
            last = job;
            finished.release();
        });
    }
    ~RandomCancelTest() override { worker.shutDown(10s); }

    void runAndCancel(TransferKind kind, const std::string& target) {
        const auto id = engine.enqueue(
            {kind, {{source.url().appending("tree"), FileUrl(target)}}, std::nullopt});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
        engine.cancel(id);
        finished.acquire();
        EXPECT_THAT(last.state, AnyOf(State::cancelled, State::finished));
        EXPECT_TRUE(last.errors->empty()) << last.errors->front();
        endedEarly += last.doneFiles < 21 ? 1 : 0;
        engine.removeEnded();
    }
    Tree sourceTree() const { return diskTree(source.path("tree")); }

    TempFolder source;
    SerialWorker worker;
    UndoJournal journal;
    TestTrash trash{FileUrl("/nowhere")};
    TransferEngine engine{{.worker = worker,
                           .journal = journal,
                           .trash = trash,
                           .now = [] { return std::chrono::steady_clock::now(); },
                           .today = [] { return Date{}; }}};
    std::mt19937 random{7};
    std::binary_semaphore finished{0};
    JobSnapshot last;
    int endedEarly = 0;
};

} // namespace

TEST_F(RandomCancelTest, aCopyLeavesNoHalfFile) {
    const TempFolder target;
    const auto whole = sourceTree();
    for (int round = 0; round < 200; ++round) {
        runAndCancel(TransferKind::copy, target.path("tree"));
        if (std::filesystem::exists(target.path("tree"))) {
            ASSERT_TRUE(std::ranges::includes(whole, diskTree(target.path("tree"))));
        }
        std::filesystem::remove_all(target.path("tree"));
    }
    EXPECT_EQ(sourceTree(), whole);
    EXPECT_GT(endedEarly, 50) << "cancelled in time";
}

TEST_F(RandomCancelTest, aMoveToAnotherVolumeLosesNothing) {
    const auto volume = TestVolume::memory("64m");
    if (!volume)
        GTEST_SKIP() << volume.error();
    const auto whole = sourceTree();
    for (int round = 0; round < 50; ++round) {
        runAndCancel(TransferKind::move, volume->path("tree"));
        auto kept = std::filesystem::exists(source.path("tree")) ? sourceTree() : Tree();
        if (std::filesystem::exists(volume->path("tree"))) {
            const auto moved = diskTree(volume->path("tree"));
            ASSERT_TRUE(std::ranges::includes(whole, moved));
            kept.insert(moved.begin(), moved.end());
            std::filesystem::copy(volume->path("tree"), source.path("tree"),
                                  std::filesystem::copy_options::recursive |
                                      std::filesystem::copy_options::skip_existing);
            std::filesystem::remove_all(volume->path("tree"));
        }
        ASSERT_TRUE(kept == whole);
    }
    EXPECT_GT(endedEarly, 10) << "cancelled in time";
}

} // namespace fennik::test
