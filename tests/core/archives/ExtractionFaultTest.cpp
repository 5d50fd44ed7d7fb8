#include "tests/core/archives/ExtractionFixture.h"

#include "tests/support/SystemCallFaults.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;
using File = ScriptedEntry;

} // namespace

/// An extraction with everything in it, into a folder with things in the way.
class ExtractionFaultTest : public ExtractionFixture {
protected:
    ExtractionFaultTest() {
        archives.entries = {File::file("new", "content of new"),
                            File::file("old", "content of old"),
                            File::folder("d", 0500),
                            File::file("d/sub/deep", "content of deep"),
                            File::file("merged/inner", "content of inner"),
                            File::link("d/link", "sub/deep"),
                            File::hardLink("d/again", "new"),
                            File::link("mine", "nowhere")};
        look();
        prepare();
        before = target();
        extract();
        EXPECT_THAT(context.errors, testing::IsEmpty());
        after = target();
    }

    void prepare() {
        for (const auto* name : {"target", "trash", "second"}) {
            fs::remove_all(temp.path(name));
            fs::create_directory(temp.path(name));
        }
        write("target/old", "what was there");
        write("target/mine/inside", "what was there too");
        write("target/merged/other", "what stays");
        context.steps.clear();
        context.errors.clear();
        context.cancelled = false;
        context.choice = ConflictChoice::overwrite;
    }

    /// Everything is what it was, or whole, or in the trash.
    void expectNothingHalf() const {
        const auto now = target();
        for (const auto& [path, content] : now)
            EXPECT_TRUE((before.contains(path) && before.at(path) == content) ||
                        (after.contains(path) && after.at(path) == content))
                << path << ": " << content;
        auto kept = now;
        for (const auto& [path, content] : trashed())
            kept.emplace("trash/" + path, content);
        for (const auto* content : {"what was there", "what was there too", "what stays"})
            EXPECT_TRUE(std::ranges::any_of(kept, [&](const auto& item) {
                return item.second == content;
            })) << content;
    }
    void expectUndone() const {
        EXPECT_THAT(undo(), testing::IsEmpty());
        EXPECT_EQ(target(), before);
    }

    Tree before;
    Tree after;
};

TEST_F(ExtractionFaultTest, leavesNothingHalfWhereverItIsCancelled) {
    int checkpoints = 0;
    bool wasReached = true;
    for (; wasReached; ++checkpoints) {
        prepare();
        int left = checkpoints;
        wasReached = false;
        context.onCheckpoint = [&] {
            if (left-- == 0)
                wasReached = context.cancelled = true;
        };
        const auto outcome = extract();
        EXPECT_THAT(context.errors, testing::IsEmpty());
        EXPECT_EQ(outcome, wasReached ? PairOutcome::pending : PairOutcome::done);
        expectNothingHalf();
        expectUndone();
    }
    EXPECT_GT(checkpoints, 15);
}

TEST_F(ExtractionFaultTest, leavesNothingHalfWhenCancelledWhileTheArchiveIsRead) {
    int calls = 0;
    bool wasReached = true;
    for (; wasReached; ++calls) {
        prepare();
        int left = calls;
        wasReached = false;
        archives.onCall = [&] {
            if (left-- == 0)
                wasReached = context.cancelled = true;
        };
        extract();
        EXPECT_THAT(context.errors, testing::IsEmpty());
        expectNothingHalf();
        expectUndone();
    }
    EXPECT_GT(calls, 15);
}

TEST_F(ExtractionFaultTest, survivesAnErrorOfEverySystemCall) {
    for (const int code : {EIO, ENOSPC}) {
        const int struck = forEachCall({.errorCode = code}, {.prepare = [this] { prepare(); },
                                                             .act = [this] { extract(); },
                                                             .check =
                                                                 [this] {
                                                                     expectNothingHalf();
                                                                     expectUndone();
                                                                 }});
        EXPECT_GT(struck, 40);
    }
}

TEST_F(ExtractionFaultTest, saysWhatFailedAndTakesTheRest) {
    forEachCall({.calls = {SystemCall::openat, SystemCall::mkdirat, SystemCall::pwrite,
                           SystemCall::symlinkat, SystemCall::linkat, SystemCall::futimens},
                 .errorCode = EIO},
                {.prepare = [this] { prepare(); },
                 .act = [this] { extract(); },
                 .check =
                     [this] {
                         const auto missing = std::ranges::count_if(after, [&](const auto& item) {
                             const auto now = target();
                             const auto found = now.find(item.first);
                             return found == now.end() || found->second != item.second;
                         });
                         EXPECT_EQ(missing > 0, !context.errors.empty());
                     }});
}

TEST_F(ExtractionFaultTest, losesNothingWhenTheProcessEnds) {
    const auto check = [this] {
        auto kept = target();
        for (const auto& [path, content] : trashed())
            kept.emplace("trash/" + path, content);
        for (const auto* content : {"what was there", "what was there too", "what stays"})
            EXPECT_TRUE(std::ranges::any_of(
                kept, [&](const auto& item) { return item.second == content; }));
    };
    const int struck = forEachCall(
        {.endsProcess = true},
        {.prepare = [this] { prepare(); }, .act = [this] { extract(); }, .check = check});
    EXPECT_GT(struck, 40);
}

} // namespace fennik::test
