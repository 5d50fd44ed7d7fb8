#include "core/operations/UndoJournal.h"

#include "core/base/PosixError.h"
#include "core/operations/Trashes.h"
#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <malloc.h>
#include <thread>

namespace fennik::test {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Notes what it is given, and refuses what it is told to.
class WatchedTrash final : public TrashProvider {
public:
    explicit WatchedTrash(FileUrl folder) : trash_(std::move(folder)) {}
    std::expected<FileUrl, std::string> trash(const FileUrl& item) const override {
        if (item.lastComponent() == refused)
            return std::unexpected("je to připojený disk.");
        trashed.push_back(item.path());
        return trash_.trash(item);
    }
    void forget(const FileUrl& place) const override { forgotten.push_back(place.path()); }

    mutable std::vector<std::string> trashed = {};
    mutable std::vector<std::string> forgotten = {};
    std::string refused = {};

private:
    FolderTrash trash_;
};

} // namespace

class UndoJournalTest : public testing::Test {
protected:
    FileUrl item(std::string_view name) const { return temp.url().appending(name); }
    bool has(std::string_view name) const {
        return std::filesystem::symlink_status(temp.path(name)).type() !=
               std::filesystem::file_type::not_found;
    }
    std::vector<std::string> failuresOfUndoing(const std::vector<UndoStep>& steps) {
        journal.record({.title = "Kopírování", .steps = steps});
        const auto undone = journal.undoLast(trash);
        return undone ? std::vector<std::string>{} : undone.error().messages;
    }

    TempFolder temp;
    TempFolder trashFolder;
    WatchedTrash trash{trashFolder.url()};
    UndoJournal journal;
};

TEST_F(UndoJournalTest, keepsTheNewestEntriesAndGivesEachOnce) {
    UndoJournal small(2);
    for (const auto* title : {"1", "2", "3"})
        small.record({.title = title, .steps = {UndoSteps::Created{item("none")}}});
    small.record({.title = "empty"});
    EXPECT_EQ(small.lastTitle(), "3");
    EXPECT_EQ(small.last()->title, "3");
    EXPECT_EQ((*small.undoLast(trash))->title, "3");
    EXPECT_EQ((*small.undoLast(trash))->title, "2");
    EXPECT_FALSE(small.undoLast(trash).value());
    EXPECT_FALSE(small.last() || small.lastTitle());
}

TEST_F(UndoJournalTest, movesBackIntoFoldersThatAreGone) {
    temp.file("moved.txt", "data");
    EXPECT_THAT(failuresOfUndoing({UndoSteps::Moved{item("gone/deep/a.txt"), item("moved.txt")}}),
                IsEmpty());
    EXPECT_EQ(contentOf(temp.path("gone/deep/a.txt")), "data");
    EXPECT_FALSE(has("moved.txt"));
}

TEST_F(UndoJournalTest, theOldItemReturnsOnceItsReplacementIsInTheTrash) {
    temp.file("a.txt", "new");
    trashFolder.file("a 7.txt", "old");
    EXPECT_THAT(failuresOfUndoing(
                    {UndoSteps::Trashed{item("a.txt"), trashFolder.url().appending("a 7.txt")},
                     UndoSteps::Created{item("a.txt")}}),
                IsEmpty());
    EXPECT_EQ(contentOf(temp.path("a.txt")), "old");
    EXPECT_EQ(contentOf(trashFolder.path("a.txt")), "new");
    EXPECT_THAT(trash.forgotten, ElementsAre(trashFolder.path("a 7.txt")));
}

TEST_F(UndoJournalTest, overwritesNothingAndSaysWhereThingsLie) {
    temp.file("from", "stranger");
    temp.file("to", "mine");
    temp.link("dangling", "nowhere");
    trashFolder.file("x 2", "trashed");
    const auto inTrash = trashFolder.url().appending("x 2");
    EXPECT_THAT(
        failuresOfUndoing({UndoSteps::Moved{item("from"), item("missing")},
                           UndoSteps::Moved{item("from"), item("to")},
                           UndoSteps::Trashed{item("from"), trashFolder.url().appending("y")},
                           UndoSteps::Trashed{item("dangling"), inTrash}}),
        ElementsAre("Na původním místě už je „dangling“ – nepřepisuji. Vracená položka "
                    "„x 2“ zůstává v „" +
                        inTrash.parent().path() + "“.",
                    "„y“ už v Koši není.",
                    "Na původním místě už je „from“ – nepřepisuji. Vracená položka „to“ "
                    "zůstává v „" +
                        temp.url().path() + "“.",
                    "„missing“ už na místě není."));
    EXPECT_EQ(contentOf(temp.path("from")), "stranger");
    EXPECT_EQ(contentOf(temp.path("to")), "mine");
    EXPECT_EQ(contentOf(inTrash.path()), "trashed");
    EXPECT_THAT(trash.forgotten, IsEmpty());
}

TEST_F(UndoJournalTest, aCopiedTreeGoesToTheTrashAsOne) {
    temp.folder("D/sub");
    temp.file("D/sub/file");
    temp.file("D/later", "put there afterwards");
    temp.file("D2", "no part of D");
    EXPECT_THAT(
        failuresOfUndoing({UndoSteps::Created{item("D")}, UndoSteps::Created{item("D/sub")},
                           UndoSteps::Created{item("D/sub/file")}, UndoSteps::Created{item("D2")}}),
        IsEmpty());
    EXPECT_THAT(trash.trashed, ElementsAre(temp.path("D2"), temp.path("D")));
    EXPECT_EQ(contentOf(trashFolder.path("D/later")), "put there afterwards");
}

TEST_F(UndoJournalTest, whatWasReplacedInACopiedTreeIsTakenBackOnItsOwn) {
    temp.folder("D");
    temp.file("D/a", "second");
    trashFolder.file("first", "first");
    const auto first = trashFolder.url().appending("first");
    EXPECT_THAT(failuresOfUndoing({UndoSteps::Created{item("D")}, UndoSteps::Created{item("D/a")},
                                   UndoSteps::Trashed{item("D/a"), first},
                                   UndoSteps::Created{item("D/a")}}),
                IsEmpty());
    EXPECT_THAT(trash.trashed, ElementsAre(temp.path("D/a"), temp.path("D/a"), temp.path("D")));

    // A folder that another one was replaced by does not hold what was made in that one.
    temp.file("D", "a file in the place of the folder");
    trashFolder.folder("old D");
    trashFolder.file("old D/a");
    trash.trashed.clear();
    EXPECT_THAT(
        failuresOfUndoing({UndoSteps::Created{item("D/a")},
                           UndoSteps::Trashed{item("D"), trashFolder.url().appending("old D")},
                           UndoSteps::Created{item("D")}}),
        IsEmpty());
    EXPECT_THAT(trash.trashed, ElementsAre(temp.path("D"), temp.path("D/a")));
    EXPECT_TRUE(std::filesystem::is_empty(temp.path("D")));
}

TEST_F(UndoJournalTest, aStepThatFailsLeavesTheOthersToBeDone) {
    temp.file("stays");
    temp.file("goes");
    temp.file("in the way");
    trash.refused = "stays";
    const auto messages = failuresOfUndoing(
        {UndoSteps::Created{item("goes")}, UndoSteps::RemovedEmptyDirectory{item("a/b")},
         UndoSteps::RemovedEmptyDirectory{item("in the way")}, UndoSteps::Created{item("stays")}});
    EXPECT_THAT(messages,
                ElementsAre("„stays“ nejde přesunout do Koše, zůstává v „" + temp.url().path() +
                                "“: je to připojený disk.",
                            "Složku „in the way“ nejde vytvořit: " + PosixError{ENOTDIR}.reason()));
    EXPECT_EQ(UndoFailure{messages}.message(), messages[0] + "\n" + messages[1]);
    EXPECT_FALSE(has("goes"));
    EXPECT_TRUE(has("a/b"));
}

TEST_F(UndoJournalTest, losesNothingWhateverCallFails) {
    const auto trashed = trashFolder.url().appending("t");
    for (const int error : {EIO, EEXIST, EXDEV}) {
        const auto struck = forEachCall(
            {.errorCode = error},
            {.prepare =
                 [&] {
                     for (const auto* folder : {"new", "old"})
                         std::filesystem::remove_all(temp.path(folder));
                     std::filesystem::remove_all(trashFolder.path("t"));
                     std::filesystem::remove_all(trashFolder.path("b"));
                     temp.folder("new");
                     temp.file("new/a", "moved");
                     temp.file("new/b", "copied");
                     trashFolder.file("t", "trashed");
                 },
             .act =
                 [&] {
                     static_cast<void>(
                         failuresOfUndoing({UndoSteps::Moved{item("old/a"), item("new/a")},
                                            UndoSteps::Trashed{item("old/t"), trashed},
                                            UndoSteps::Created{item("new/b")}}));
                 },
             .check =
                 [&] {
                     EXPECT_NE(has("old/a"), has("new/a"));
                     EXPECT_EQ(contentOf(temp.path(has("old/a") ? "old/a" : "new/a")), "moved");
                     EXPECT_NE(has("old/t"), std::filesystem::exists(trashed.path()));
                     EXPECT_EQ(contentOf(has("old/t") ? temp.path("old/t") : trashed.path()),
                               "trashed");
                     EXPECT_EQ(contentOf(has("new/b") ? temp.path("new/b") : trashFolder.path("b")),
                               "copied");
                 }});
        EXPECT_GE(struck, 15) << error;
    }
}

TEST_F(UndoJournalTest, aHundredThousandStepsAreLight) {
    constexpr int count = 100'000;
    const auto before = mallinfo2();
    {
        std::vector<UndoStep> steps;
        steps.emplace_back(UndoSteps::Created{item("Fotografie")});
        for (int i = 0; i < count; ++i)
            steps.emplace_back(UndoSteps::Created{
                item("Fotografie/2016 dovolená u moře/IMG_" + std::to_string(i) + ".jpeg")});
        for (int i = 0; i < count; ++i)
            steps.emplace_back(UndoSteps::Moved{
                item("karta/DCIM/100FOTO/IMG_" + std::to_string(i) + ".raw"),
                item("Fotografie/2016 dovolená u moře/IMG_" + std::to_string(i) + ".raw")});
        journal.record({.title = "Kopírování", .steps = steps});
    }
    const auto after = mallinfo2();
    const auto used = after.uordblks + after.hblkhd - before.uordblks - before.hblkhd;
    EXPECT_LT(used / (2UL * count), 400U);

    const auto undone = journal.undoLast(trash);
    EXPECT_EQ(undone.error().messages.size(), static_cast<std::size_t>(count));
}

} // namespace fennik::test
