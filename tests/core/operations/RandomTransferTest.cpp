#include "core/operations/ItemTransfer.h"

#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TestTrash.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <set>
#include <sys/stat.h>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::string>;

/// Transfers of random trees that meet random names, answers, failures and strangers.
class RandomTransferTest : public testing::Test {
protected:
    void SetUp() override {
        for (auto* volume : {&first, &second}) {
            auto made = TestVolume::memory("16m");
            if (!made)
                GTEST_SKIP() << made.error();
            *volume = std::make_unique<TestVolume>(std::move(*made));
        }
    }

    std::size_t below(std::size_t limit) { return random() % limit; }
    template <class T, std::size_t count>
    T oneOf(const T (&values)[count]) {
        return values[below(count)];
    }

    void clear(const std::string& folder) const {
        fs::create_directories(folder);
        for (const auto& entry : fs::directory_iterator(folder))
            fs::remove_all(entry);
    }
    /// Every content is the only one of its kind.
    void fill(const std::string& folder, int depth) {
        for (const auto* name : {"a", "b", "c", "d"}) {
            const auto path = folder + "/" + name;
            switch (below(depth == 0 ? 5 : 7)) {
            case 0:
            case 1:
            case 2:
                std::ofstream(path) << "content " << ++files << std::string(below(200), '.');
                break;
            case 3:
                if (below(2) == 0)
                    fs::create_symlink("../a", path);
                else
                    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
                break;
            case 4:
                break;
            default:
                fs::create_directory(path);
                fill(path, depth - 1);
            }
        }
    }

    static std::set<std::string> contentsOf(const std::vector<Tree>& trees) {
        std::set<std::string> contents;
        for (const auto& tree : trees)
            for (const auto& [path, content] : tree)
                if (content.starts_with("content"))
                    contents.insert(content);
        return contents;
    }

    void prepare() {
        from = first->path("from");
        to = (below(2) == 0 ? *first : *second).path("to");
        trashed = (below(3) == 0 ? *second : *first).path("trash");
        for (const auto& folder : {from, to, trashed})
            clear(folder);
        fill(from, 2);
        fill(to, 2);
        trash = std::make_unique<TestTrash>(FileUrl(trashed));
        context = std::make_unique<RecordingContext>(
            below(2) == 0 ? TransferKind::copy : TransferKind::move, *trash);
        context->onAsk = [this](const Conflict&) {
            constexpr ConflictChoice choices[] = {
                ConflictChoice::overwrite, ConflictChoice::overwrite,
                ConflictChoice::rename,    ConflictChoice::rename,
                ConflictChoice::skip,      ConflictChoice::overwriteOlder,
                ConflictChoice::cancel};
            context->choice = oneOf(choices);
        };
        if (below(5) == 0)
            context->onCheckpoint = [this, left = below(40)]() mutable {
                if (left-- == 0)
                    context->cancelled = true;
            };
    }
    Fault failure() {
        constexpr int errors[] = {EIO, ENOSPC, EACCES, EPERM, EMFILE, ENOMEM, EROFS};
        return {.number = static_cast<int>(1 + below(250)), .errorCode = oneOf(errors)};
    }
    /// Puts a file of its own somewhere into the target, if nothing is there.
    Fault stranger() {
        return {.number = static_cast<int>(1 + below(250)), .before = [this] {
                    constexpr const char* names[] = {"/a", "/b", "/c/d", "/d/a"};
                    const auto path = to + oneOf(names);
                    if (!fs::exists(fs::symlink_status(path)))
                        std::ofstream(path) << foreign;
                    hasStranger =
                        fs::exists(path) && diskTree(to).at(path.substr(to.size() + 1)) == foreign;
                }};
    }

    std::vector<PairOutcome> transfer() {
        std::vector<TransferPair> pairs;
        for (const auto* name : {"a", "b", "c", "d"})
            if (fs::exists(fs::symlink_status(from + "/" + name)))
                pairs.push_back({FileUrl(from + "/" + name), FileUrl(to + "/" + name)});
        ItemTransfer items(*context);
        const auto totals = items.count(pairs);
        context->setTotals(totals.bytes, totals.files);
        return items.run(pairs);
    }

    std::mt19937 random{20'261'121};
    int files = 0;
    bool hasStranger = false;
    const std::string foreign = "content of somebody else";
    std::unique_ptr<TestVolume> first, second;
    std::string from, to, trashed;
    std::unique_ptr<TestTrash> trash;
    std::unique_ptr<RecordingContext> context;
};

} // namespace

TEST_F(RandomTransferTest, losesNothingSaysEverythingAndCanBeUndone) {
    int failed = 0;
    int undone = 0;
    int strangers = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(2500);
    for (int round = 0; std::chrono::steady_clock::now() < end && !HasFailure(); ++round) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, "round " + std::to_string(round));
        prepare();
        const auto sources = diskTree(from);
        const auto targets = diskTree(to);
        auto wanted = contentsOf({sources, targets});
        std::vector<PairOutcome> outcomes;
        const auto failures = below(3);
        const bool meetsStranger = below(4) == 0;
        {
            std::vector<std::unique_ptr<FaultInjection>> faults;
            for (std::size_t i = 0; i < failures; ++i)
                faults.push_back(std::make_unique<FaultInjection>(failure()));
            if (meetsStranger)
                faults.push_back(std::make_unique<FaultInjection>(stranger()));
            outcomes = transfer();
        }
        if (hasStranger)
            wanted.insert(foreign);
        const auto found = contentsOf({diskTree(from), diskTree(to), diskTree(trashed)});
        EXPECT_EQ(found, wanted) << "lost or half";

        const bool isSaid = !context->errors.empty();
        EXPECT_EQ(std::ranges::count(outcomes, PairOutcome::failed) > 0, isSaid);
        if (!isSaid && !context->cancelled && context->skipped == 0) {
            const auto arrived = contentsOf({diskTree(to)});
            EXPECT_TRUE(std::ranges::includes(arrived, contentsOf({sources})));
            EXPECT_TRUE(context->kind() == TransferKind::copy || diskTree(from).empty());
        }
        if (failures == 0 && !meetsStranger && !context->cancelled) {
            EXPECT_EQ(context->doneBytes, context->totalBytes);
            EXPECT_EQ(context->doneFiles + context->skipped +
                          static_cast<std::int64_t>(context->errors.size()),
                      context->totalFiles);
        }

        UndoJournal journal;
        journal.record({.title = {}, .steps = context->steps, .date = {}});
        const auto undo = journal.undoLast(*trash);
        // The second failure may be that of putting back what was half in the trash.
        if (!hasStranger && failures < 2) {
            EXPECT_TRUE(undo) << undo.error().message();
            EXPECT_EQ(diskTree(from), sources);
            EXPECT_EQ(diskTree(to), targets);
        }
        EXPECT_EQ(contentsOf({diskTree(from), diskTree(to), diskTree(trashed)}), wanted);
        failed += isSaid ? 1 : 0;
        undone += context->steps.empty() ? 0 : 1;
        strangers += std::exchange(hasStranger, false) ? 1 : 0;
    }
    EXPECT_GT(failed, 20);
    EXPECT_GT(undone, 20);
    EXPECT_GT(strangers, 2);
}

} // namespace fennik::test
