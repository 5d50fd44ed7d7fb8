#include "core/operations/ItemTransfer.h"
#include "core/operations/UndoJournal.h"

#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace UndoSteps;

bool isThere(const std::string& path) {
    struct stat info{};
    return lstat(path.c_str(), &info) == 0;
}

struct stat statusOf(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(lstat(path.c_str(), &info), 0) << path;
    return info;
}

} // namespace

class ItemTransferTest : public testing::Test {
protected:
    ItemTransferTest() {
        temp.folder("trash");
        temp.folder("to");
    }

    /// Transfers the named items to the given places, after counting.
    std::vector<PairOutcome>
    transfer(RecordingContext& context,
             const std::vector<std::pair<std::string, std::string>>& pairs) const {
        std::vector<TransferPair> urls;
        for (const auto& [source, destination] : pairs)
            urls.push_back({FileUrl(temp.path(source)), FileUrl(temp.path(destination))});
        ItemTransfer transfer(context);
        const auto totals = transfer.count(urls);
        context.setTotals(totals.bytes, totals.files);
        return transfer.run(urls);
    }
    PairOutcome transfer(RecordingContext& context, const std::string& source,
                         const std::string& destination) const {
        return transfer(context, {{source, destination}}).front();
    }
    FileUrl url(std::string_view name) const { return FileUrl(temp.path(name)); }

    TempFolder temp;
    TestTrash trash{FileUrl(temp.path("trash"))};
    RecordingContext copying{TransferKind::copy, trash};
    RecordingContext moving{TransferKind::move, trash};
};

TEST_F(ItemTransferTest, copiesATreeWithItsLinksPipesModesAndTimes) {
    temp.folder("tree/sub/empty");
    temp.file("tree/a.txt", "hello");
    temp.file("tree/sub/b", std::string(3000, 'b'));
    temp.link("tree/link", "..");
    mkfifo(temp.path("tree/pipe").c_str(), 0640);
    chmod(temp.path("tree/sub").c_str(), 0555);
    const timespec times[2] = {{1, 2}, {3, 4}};
    utimensat(AT_FDCWD, temp.path("tree/sub").c_str(), times, 0);
    EXPECT_EQ(transfer(copying, "tree", "to/tree"), PairOutcome::done);
    EXPECT_THAT(copying.errors, IsEmpty());
    EXPECT_EQ(contentOf(temp.path("to/tree/a.txt")), "hello");
    EXPECT_EQ(contentOf(temp.path("to/tree/sub/b")), std::string(3000, 'b'));
    EXPECT_EQ(std::filesystem::read_symlink(temp.path("to/tree/link")), "..");
    EXPECT_TRUE(S_ISFIFO(statusOf(temp.path("to/tree/pipe")).st_mode));
    const auto sub = statusOf(temp.path("to/tree/sub"));
    EXPECT_EQ(sub.st_mode & 07777, 0555);
    EXPECT_EQ(sub.st_mtim.tv_sec, 3);
    EXPECT_EQ(copying.totalFiles, 4);
    EXPECT_EQ(copying.doneFiles, 4);
    EXPECT_EQ(copying.totalBytes, 3005);
    EXPECT_GE(copying.doneBytes, 3005);
    ASSERT_EQ(copying.steps.size(), 7U);
    EXPECT_EQ(copying.steps.front(), UndoStep(Created{url("to/tree")}));
}

TEST_F(ItemTransferTest, movesWithinAVolumeByOneRename) {
    temp.folder("tree/sub");
    temp.file("tree/sub/b", "b");
    const auto inode = statusOf(temp.path("tree")).st_ino;
    EXPECT_EQ(transfer(moving, "tree", "to/new/tree"), PairOutcome::done);
    EXPECT_EQ(statusOf(temp.path("to/new/tree")).st_ino, inode);
    EXPECT_FALSE(isThere(temp.path("tree")));
    EXPECT_THAT(moving.steps,
                ElementsAre(Created{url("to/new")}, Moved{url("tree"), url("to/new/tree")}));
    EXPECT_EQ(moving.doneFiles, moving.totalFiles);
}

TEST_F(ItemTransferTest, ontoItselfAndIntoItself) {
    temp.file("a.txt", "a");
    temp.folder("x");
    temp.file("x/inner");
    temp.link("into", "x");
    EXPECT_EQ(transfer(copying, {{"a.txt", "a.txt"}, {"x", "x/y"}, {"x", "into/x"}}),
              (std::vector{PairOutcome::done, PairOutcome::failed, PairOutcome::failed}));
    EXPECT_EQ(contentOf(temp.path("a 2.txt")), "a");
    EXPECT_THAT(copying.steps, ElementsAre(Created{url("a 2.txt")}));
    EXPECT_THAT(copying.errors, ElementsAre("„x“ nejde kopírovat do sebe sama.",
                                            "„x“ nejde kopírovat do sebe sama."));

    EXPECT_EQ(transfer(moving, {{"a.txt", "a.txt"}, {"x", "x/new/y"}}),
              (std::vector{PairOutcome::failed, PairOutcome::failed}));
    EXPECT_THAT(moving.errors, ElementsAre("„a.txt“ nejde přesunout do sebe sama.",
                                           "„x“ nejde přesunout do sebe sama."));
    EXPECT_THAT(moving.steps, IsEmpty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp.path("x")), {}), 1);
}

TEST_F(ItemTransferTest, theQuestionSaysWhatLiesThere) {
    temp.file("a", "new");
    temp.folder("to/a");
    const timespec times[2] = {{1, 2}, {3, 4}};
    utimensat(AT_FDCWD, temp.path("a").c_str(), times, 0);
    EXPECT_EQ(transfer(copying, {{"a", "to/a"}, {"a", "to/b"}}),
              (std::vector{PairOutcome::pending, PairOutcome::pending}));
    ASSERT_EQ(copying.conflicts.size(), 1U);
    const auto& conflict = copying.conflicts.front();
    EXPECT_EQ(conflict.source, url("a"));
    EXPECT_EQ(conflict.destination, FileUrl(temp.path("to/a"), FileUrl::Form::directory));
    EXPECT_EQ(conflict.sourceSize, 3);
    EXPECT_EQ(conflict.sourceDate, (Date{3, 4}));
    EXPECT_EQ(conflict.destinationSize, 0) << "a folder has none";
    EXPECT_TRUE(conflict.typeMismatch);
    EXPECT_TRUE(copying.cancelled) << "by the answer";
    EXPECT_FALSE(isThere(temp.path("to/b")));
}

TEST_F(ItemTransferTest, everyAnswerIsHeeded) {
    temp.file("a.txt", "new");
    temp.file("to/a.txt", "old");
    for (auto* context : {&copying, &moving}) {
        context->choice = ConflictChoice::skip;
        EXPECT_EQ(transfer(*context, "a.txt", "to/a.txt"), PairOutcome::skipped);
        EXPECT_EQ(context->skipped, 1);
        EXPECT_EQ(context->doneBytes, 3);
        EXPECT_THAT(context->steps, IsEmpty());
    }

    copying.choice = ConflictChoice::rename;
    EXPECT_EQ(transfer(copying, "a.txt", "to/a.txt"), PairOutcome::done);
    EXPECT_EQ(contentOf(temp.path("to/a 2.txt")), "new");

    copying.steps.clear();
    copying.choice = ConflictChoice::overwriteOlder;
    std::filesystem::last_write_time(temp.path("a.txt"),
                                     std::filesystem::last_write_time(temp.path("to/a.txt")));
    EXPECT_EQ(transfer(copying, "a.txt", "to/a.txt"), PairOutcome::skipped) << "not older";
    std::filesystem::last_write_time(temp.path("to/a.txt"), std::filesystem::file_time_type::min());
    EXPECT_EQ(transfer(copying, "a.txt", "to/a.txt"), PairOutcome::done);
    EXPECT_EQ(contentOf(temp.path("to/a.txt")), "new");
    EXPECT_EQ(contentOf(temp.path("trash/a.txt")), "old");
    EXPECT_THAT(copying.steps, ElementsAre(Trashed{url("to/a.txt"), url("trash/a.txt")},
                                           Created{url("to/a.txt")}));

    moving.choice = ConflictChoice::overwrite;
    EXPECT_EQ(transfer(moving, "a.txt", "to/a.txt"), PairOutcome::done);
    EXPECT_FALSE(isThere(temp.path("a.txt")));
    EXPECT_THAT(moving.steps, ElementsAre(Trashed{url("to/a.txt"), url("trash/a 2.txt")},
                                          Moved{url("a.txt"), url("to/a.txt")}));
}

TEST_F(ItemTransferTest, foldersAreMergedAndStayWhereSomethingWasSkipped) {
    temp.folder("x/full");
    temp.folder("x/emptied");
    temp.file("x/full/same", "1");
    temp.file("x/full/other", "22");
    temp.file("x/emptied/file", "333");
    temp.folder("to/x/full");
    temp.folder("to/x/emptied");
    temp.file("to/x/full/same", "there");
    moving.choice = ConflictChoice::skip;
    EXPECT_EQ(transfer(moving, "x", "to/x"), PairOutcome::skipped);
    EXPECT_EQ(diskTree(temp.path("x")),
              (std::map<std::string, std::string>{{"full", "folder/"}, {"full/same", "1"}}));
    EXPECT_EQ(diskTree(temp.path("to")),
              (std::map<std::string, std::string>{{"x", "folder/"},
                                                  {"x/full", "folder/"},
                                                  {"x/full/same", "there"},
                                                  {"x/full/other", "22"},
                                                  {"x/emptied", "folder/"},
                                                  {"x/emptied/file", "333"}}));
    EXPECT_THAT(moving.steps, testing::UnorderedElementsAre(
                                  Moved{url("x/full/other"), url("to/x/full/other")},
                                  Moved{url("x/emptied/file"), url("to/x/emptied/file")},
                                  RemovedEmptyDirectory{url("x/emptied")}));
    EXPECT_EQ(moving.totalFiles, 3);
    EXPECT_EQ(moving.doneFiles, 2);
    EXPECT_EQ(moving.skipped, 1);
    EXPECT_EQ(moving.doneBytes, moving.totalBytes);
}

TEST_F(ItemTransferTest, aFolderThatHoldsTheSourceIsNotOverwritten) {
    temp.folder("x/a");
    temp.file("x/a/a", "deep");
    temp.link("way", "x/a");
    moving.choice = ConflictChoice::overwrite;
    EXPECT_EQ(transfer(moving, {{"x/a/a", "x/a"}, {"way/a", "x/a"}}),
              (std::vector{PairOutcome::failed, PairOutcome::failed}));
    EXPECT_THAT(moving.errors, ElementsAre("„a“ nejde přepsat: obsahuje zdroj.",
                                           "„a“ nejde přepsat: obsahuje zdroj."));
    EXPECT_EQ(contentOf(temp.path("x/a/a")), "deep");
    EXPECT_THAT(moving.steps, IsEmpty());
}

TEST_F(ItemTransferTest, whatTheTrashDoesNotTakeStays) {
    temp.file("a", "new");
    temp.file("to/a", "old");
    trash.refusal = "Koš je plný.";
    copying.choice = ConflictChoice::overwrite;
    EXPECT_EQ(transfer(copying, "a", "to/a"), PairOutcome::failed);
    EXPECT_THAT(copying.errors, ElementsAre("„a“ nejde přepsat: Koš je plný."));
    EXPECT_EQ(contentOf(temp.path("to/a")), "old");
}

TEST_F(ItemTransferTest, whatWasOverwrittenComesBackWhenTheCopyFailsOrIsCancelled) {
    mknod(temp.path("device").c_str(), S_IFSOCK | 0600, 0);
    temp.file("a", std::string(1 << 20, 'a'));
    temp.file("to/device", "old");
    temp.file("to/a", "older");
    copying.choice = ConflictChoice::overwrite;
    EXPECT_EQ(transfer(copying, "device", "to/device"), PairOutcome::failed);
    EXPECT_THAT(copying.errors,
                ElementsAre("„device“ nejde kopírovat: není to soubor ani složka."));
    EXPECT_EQ(contentOf(temp.path("to/device")), "old");
    EXPECT_THAT(trash.forgotten, ElementsAre(url("trash/device")));

    copying.errors.clear();
    copying.onBytes = [this](std::int64_t) { copying.cancelled = true; };
    EXPECT_EQ(transfer(copying, "a", "to/a"), PairOutcome::pending);
    EXPECT_EQ(contentOf(temp.path("to/a")), "older");
    EXPECT_THAT(copying.errors, IsEmpty());
    EXPECT_THAT(copying.steps, IsEmpty());

    // Where somebody has taken the place meanwhile, both stay, and so does the step.
    copying.cancelled = false;
    copying.onBytes = [](std::int64_t) {};
    trash.onTrashed = [this](const FileUrl& item) {
        std::ofstream(item.path()) << "stranger";
        copying.choice = ConflictChoice::skip;
    };
    EXPECT_EQ(transfer(copying, "device", "to/device"), PairOutcome::failed);
    EXPECT_EQ(contentOf(temp.path("to/device")), "stranger");
    EXPECT_THAT(copying.steps, ElementsAre(Trashed{url("to/device"), url("trash/device")}));
    EXPECT_EQ(copying.errors.back(), "„device“ zůstává v Koši: File exists");
}

TEST_F(ItemTransferTest, aPartThatCannotBeRemovedIsSaidAndGoesWithUndo) {
    temp.file("a", std::string(1 << 20, 'a'));
    temp.file("to/a", "old");
    copying.choice = ConflictChoice::overwrite;
    copying.onBytes = [this](std::int64_t) { copying.cancelled = true; };
    {
        const FaultInjection removals({.calls = {SystemCall::unlinkat}, .errorCode = EIO});
        transfer(copying, "a", "to/a");
    }
    EXPECT_THAT(copying.errors,
                ElementsAre("Rozpracovaný soubor „a“ nejde odstranit: Input/output error",
                            "„a“ zůstává v Koši: File exists"));
    UndoJournal journal;
    journal.record({.title = {}, .steps = copying.steps, .date = {}});
    EXPECT_TRUE(journal.undoLast(trash));
    EXPECT_EQ(contentOf(temp.path("to/a")), "old");
}

TEST_F(ItemTransferTest, somebodyFasterIsAskedAboutAndNotReplaced) {
    temp.file("a", "mine");
    temp.folder("folder");
    temp.file("folder/in", "mine too");
    copying.choice = ConflictChoice::skip;
    copying.onName = [this](const std::string&) { temp.file("to/a", "stranger"); };
    EXPECT_EQ(transfer(copying, "a", "to/a"), PairOutcome::skipped);
    EXPECT_EQ(copying.conflicts.size(), 1U);
    EXPECT_EQ(contentOf(temp.path("to/a")), "stranger");

    // The next free name is not to be had either by the time it is used.
    copying.choice = ConflictChoice::rename;
    copying.onName = [this](const std::string&) {
        if (!isThere(temp.path("to/a 2")))
            temp.file("to/a 2", "faster");
    };
    EXPECT_EQ(transfer(copying, "a", "to/a"), PairOutcome::done);
    EXPECT_EQ(contentOf(temp.path("to/a 2")), "faster");
    EXPECT_EQ(contentOf(temp.path("to/a 3")), "mine");

    moving.choice = ConflictChoice::skip;
    {
        const FaultInjection race({.calls = {SystemCall::renameat2}, .number = 1, .before = [this] {
                                       temp.file("to/folder", "stranger");
                                   }});
        EXPECT_EQ(transfer(moving, "folder", "to/folder"), PairOutcome::skipped);
    }
    EXPECT_EQ(contentOf(temp.path("to/folder")), "stranger");
    EXPECT_EQ(contentOf(temp.path("folder/in")), "mine too");
}

TEST_F(ItemTransferTest, theWayToTheTargetIsMadeOnlyForWhatGoesThere) {
    temp.file("a", "a");
    EXPECT_EQ(transfer(copying, {{"missing", "new/one/missing"}, {"a", "new/two/b"}}),
              (std::vector{PairOutcome::failed, PairOutcome::done}));
    EXPECT_THAT(copying.errors, ElementsAre("„missing“ nejde přečíst: No such file or directory"));
    EXPECT_FALSE(isThere(temp.path("new/one")));
    EXPECT_THAT(copying.steps, ElementsAre(Created{url("new")}, Created{url("new/two")},
                                           Created{url("new/two/b")}));
    copying.errors.clear();
    temp.link("nowhere", "gone");
    EXPECT_EQ(transfer(copying, "a", "nowhere/a"), PairOutcome::failed);
    EXPECT_THAT(copying.errors, ElementsAre("„a“: No such file or directory"));
    EXPECT_FALSE(isThere(temp.path("gone")));
}

TEST_F(ItemTransferTest, anUnreadableFolderCostsOneSentenceAndNothingElse) {
    temp.folder("x/closed");
    temp.file("x/closed/secret", "s");
    temp.file("x/open", "o");
    temp.folder("x/readonly");
    temp.file("x/readonly/file", "f");
    temp.file("x/private", "p");
    chmod(temp.path("x/closed").c_str(), 0);
    chmod(temp.path("x/private").c_str(), 0);
    chmod(temp.path("x/readonly").c_str(), 0555);
    chmod(temp.path("to").c_str(), 0777);
    EXPECT_TRUE(asOrdinaryUser([this] {
        EXPECT_EQ(transfer(copying, "x", "to/x"), PairOutcome::failed);
        EXPECT_THAT(copying.errors, testing::UnorderedElementsAre(
                                        "Složku „closed“ nejde přečíst: Permission denied",
                                        "„private“: Permission denied"));
        EXPECT_EQ(diskTree(temp.path("to/x")),
                  (std::map<std::string, std::string>{
                      {"open", "o"}, {"readonly", "folder/"}, {"readonly/file", "f"}}));
        EXPECT_EQ(statusOf(temp.path("to/x/readonly")).st_mode & 07777, 0555);
        EXPECT_EQ(copying.doneFiles, 2);
        chmod(temp.path("to/x/readonly").c_str(), 0755);
        return !HasFailure();
    }));
}

TEST_F(ItemTransferTest, aParentSwappedForALinkLeadsNowhereElse) {
    for (const auto* name : {"x/1/a", "x/1/b", "x/1/c", "x/2/d"}) {
        temp.folder(FileUrl(temp.path(name)).parent().path().substr(temp.url().path().size() + 1));
        temp.file(name, name);
    }
    temp.folder("outside");
    temp.file("outside/sentinel", "s");
    temp.file("outside/a", "of somebody else");
    temp.file("outside/b", "of somebody else");
    temp.file("outside/c", "of somebody else");
    const auto before = diskTree(temp.path("outside"));
    const auto swap = [this](const std::string& folder) {
        std::filesystem::rename(temp.path(folder), temp.path(folder + ".away"));
        temp.link(folder, temp.path("outside"));
    };
    int named = 0;
    copying.onName = [&](const std::string&) {
        if (++named == 2) {
            swap("x/1");
            swap("to/x");
        }
    };
    transfer(copying, "x", "to/x");
    EXPECT_EQ(diskTree(temp.path("outside")), before);
    for (const auto& [path, content] : diskTree(temp.path("to/x.away")))
        EXPECT_NE(content, "of somebody else") << path;
}
} // namespace fennik::test
