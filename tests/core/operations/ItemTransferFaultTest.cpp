#include "core/operations/ItemTransfer.h"

#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <set>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;
using Tree = std::map<std::string, std::string>;

/// Everything has a content of its own, so that it can be found again wherever it goes.
struct Scenario {
    std::string name = {};
    TransferKind kind = TransferKind::copy;
    bool crossesVolumes = false;
    std::vector<std::string> sources = {};
    std::vector<std::string> targets = {};
    int leastCalls = 0; ///< that such a transfer cannot do without
};

std::ostream& operator<<(std::ostream& out, const Scenario& scenario) {
    return out << scenario.name;
}

const std::vector<std::string> treeOfAll{"x/a", "x/sub/b", "x/sub/c", "y"};

const Scenario scenarios[] = {
    {"copy", TransferKind::copy, false, treeOfAll, {"other"}, 60},
    {"move", TransferKind::move, false, treeOfAll, {"other"}, 8},
    {"copyOver", TransferKind::copy, false, {"x", "y/a"}, {"x", "y/a", "y/other"}, 40},
    {"moveOver", TransferKind::move, false, {"x", "y"}, {"x", "y/inside"}, 20},
    {"merge", TransferKind::move, false, treeOfAll, {"x/a", "x/sub/d", "other"}, 30},
    {"moveAcross", TransferKind::move, true, treeOfAll, {"other"}, 90},
    {"moveOverAcross", TransferKind::move, true, {"x/a", "x/b", "y"}, {"x/a", "y/in"}, 90},
};

/// Two folders, maybe on two volumes, and a trash beside the first.
class World {
public:
    World(const Scenario& scenario, const std::string& source, const std::string& target)
        : trash(FileUrl(source + "/trash")), scenario_(scenario), root_(source), target_(target) {
        reset();
    }

    void reset() {
        for (const auto& folder : {path("from"), path("trash"), target_}) {
            fs::create_directories(folder);
            for (const auto& entry : fs::directory_iterator(folder))
                fs::remove_all(entry);
        }
        for (const auto& name : scenario_.sources)
            write(path("from/" + name), "source of " + name);
        for (const auto& name : scenario_.targets)
            write(target_ + "/" + name, "target of " + name);
        context = std::make_unique<RecordingContext>(scenario_.kind, trash);
        context->choice = ConflictChoice::overwrite;
        outcomes.clear();
    }

    void transfer() {
        std::set<std::string> tops;
        for (const auto& name : scenario_.sources)
            tops.insert(name.substr(0, name.find('/')));
        std::vector<TransferPair> pairs;
        for (const auto& name : tops)
            pairs.push_back({FileUrl(path("from/" + name)), FileUrl(target_ + "/" + name)});
        ItemTransfer transfer(*context);
        const auto totals = transfer.count(pairs);
        context->setTotals(totals.bytes, totals.files);
        outcomes = transfer.run(pairs);
    }

    Tree sources() const { return diskTree(path("from")); }
    Tree targets() const { return diskTree(target_); }
    Tree trashed() const { return diskTree(path("trash")); }

    TestTrash trash;
    std::unique_ptr<RecordingContext> context;
    std::vector<PairOutcome> outcomes;

private:
    static void write(const std::string& path, const std::string& content) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    std::string path(const std::string& name) const { return root_ + "/" + name; }

    const Scenario& scenario_;
    const std::string root_;
    const std::string target_;
};

} // namespace

class ItemTransferFaultTest : public testing::TestWithParam<Scenario> {
protected:
    void SetUp() override {
        // In memory nothing waits for a disk.
        auto first = TestVolume::memory("8m");
        auto second = TestVolume::memory("8m");
        if (GetParam().crossesVolumes && !second)
            GTEST_SKIP() << second.error();
        const auto source = first ? first->path() : temp.url().path();
        const auto target = GetParam().crossesVolumes ? second->path() : source;
        volumes.push_back(std::move(first));
        volumes.push_back(std::move(second));
        world = std::make_unique<World>(GetParam(), source, target + "/to");
        before = {world->sources(), world->targets()};
        world->transfer();
        EXPECT_THAT(world->context->errors, testing::IsEmpty());
        after = {world->sources(), world->targets()};
        wholeFiles = contentsOf({before.first, before.second});
    }

    static std::set<std::string> contentsOf(const std::vector<Tree>& trees) {
        std::set<std::string> contents;
        for (const auto& tree : trees) {
            for (const auto& [path, content] : tree)
                contents.insert(content);
        }
        return contents;
    }

    /// What holds at any moment, whatever has struck.
    void expectNothingLost() const {
        const auto found = contentsOf({world->sources(), world->targets(), world->trashed()});
        EXPECT_TRUE(std::ranges::includes(found, wholeFiles));
    }
    /// What holds once the transfer has come to an end.
    void expectOrder() const {
        expectNothingLost();
        const auto found = contentsOf({world->sources(), world->targets(), world->trashed()});
        EXPECT_TRUE(std::ranges::includes(wholeFiles, found)) << "a half file, or a foreign one";
        EXPECT_TRUE(world->targets().contains("other") == before.second.contains("other"));
        const auto& context = *world->context;
        const bool isSaid = !context.errors.empty();
        EXPECT_EQ(std::ranges::count(world->outcomes, PairOutcome::failed) > 0, isSaid);
        if (!isSaid && !context.cancelled) {
            EXPECT_EQ(world->sources(), after.first);
            EXPECT_EQ(world->targets(), after.second);
        }
    }
    /// What was done is taken back as if it had never been.
    void expectUndo() const {
        UndoJournal journal;
        journal.record({.title = "", .steps = world->context->steps, .date = {}});
        const auto undone = journal.undoLast(world->trash);
        EXPECT_TRUE(undone) << undone.error().message();
        EXPECT_EQ(world->sources(), before.first);
        EXPECT_EQ(world->targets(), before.second);
    }

    TempFolder temp;
    std::vector<TestVolume::Made> volumes;
    std::unique_ptr<World> world;
    std::pair<Tree, Tree> before; ///< sources and targets
    std::pair<Tree, Tree> after;
    std::set<std::string> wholeFiles;
};

TEST_P(ItemTransferFaultTest, failuresLoseNothingAndCanBeUndone) {
    for (const int error : {EIO, ENOSPC, EACCES}) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, PosixError{error}.reason());
        const int calls = forEachCall({.errorCode = error}, {.prepare = [this] { world->reset(); },
                                                             .act = [this] { world->transfer(); },
                                                             .check =
                                                                 [this] {
                                                                     expectOrder();
                                                                     expectUndo();
                                                                 }});
        EXPECT_GE(calls, GetParam().leastCalls);
    }
}

TEST_P(ItemTransferFaultTest, anEndAtAnyMomentLosesNothing) {
    const int calls =
        forEachCall({.endsProcess = true}, {.prepare = [this] { world->reset(); },
                                            .act = [this] { world->transfer(); },
                                            .check = [this] { expectNothingLost(); }});
    EXPECT_GE(calls, GetParam().leastCalls);
}

TEST_P(ItemTransferFaultTest, aCancellationAtAnyMomentLeavesNothingHalf) {
    bool isCancelled = true;
    int last = 0;
    for (; isCancelled && !HasFailure(); ++last) {
        world->reset();
        int looks = 0;
        world->context->onCheckpoint = [this, &looks, last] {
            if (looks++ == last)
                world->context->cancelled = true;
        };
        world->transfer();
        isCancelled = world->context->cancelled;
        EXPECT_THAT(world->context->errors, testing::IsEmpty());
        expectOrder();
        expectUndo();
    }
    EXPECT_GT(last, 4);
}

INSTANTIATE_TEST_SUITE_P(Transfers, ItemTransferFaultTest, testing::ValuesIn(scenarios),
                         [](const auto& scenario) { return scenario.param.name; });

} // namespace fennik::test
