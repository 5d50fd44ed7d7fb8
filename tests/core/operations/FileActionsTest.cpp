#include "core/operations/FileActions.h"

#include "core/base/PosixError.h"
#include "core/operations/Trashes.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace fennik::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class FileActionsTest : public testing::Test {
protected:
    FileUrl item(std::string_view name) const { return temp.url().appending(name); }
    bool has(std::string_view name) const {
        return std::filesystem::symlink_status(temp.path(name)).type() !=
               std::filesystem::file_type::not_found;
    }
    std::string renameFailure(std::string_view name, std::string_view newName) {
        const auto renamed = FileActions::rename(item(name), newName, journal);
        return renamed ? "renamed" : renamed.error().message();
    }
    std::string folderFailure(std::string_view name) {
        const auto made = FileActions::newFolder(temp.url(), name, journal);
        return made ? "made" : made.error().message();
    }
    std::string undone() {
        const auto result = journal.undoLast(trash);
        if (!result)
            return result.error().message();
        return *result ? (*result)->title : "nothing";
    }

    TempFolder temp;
    TempFolder trashFolder;
    FolderTrash trash{trashFolder.url()};
    UndoJournal journal;
};

TEST_F(FileActionsTest, namesAreTrimmedAndChecked) {
    EXPECT_EQ(FileActions::validateName(" \t\u00A0Nové jméno\n"), "Nové jméno");
    for (const auto* text : {"", "  \n", ".", " .. "})
        EXPECT_EQ(FileActions::validateName(text).error().message(), "Zadejte název.") << text;
    EXPECT_EQ(FileActions::validateName("a:b").error().message(),
              "Název nesmí obsahovat dvojtečku.");
}

TEST_F(FileActionsTest, renamesAndTakesItBack) {
    temp.file("starý.txt", "data");
    EXPECT_EQ(FileActions::rename(item("starý.txt"), " nový.txt ", journal), item("nový.txt"));
    EXPECT_TRUE(has("nový.txt"));
    EXPECT_FALSE(has("starý.txt"));
    ASSERT_TRUE(journal.last());
    EXPECT_THAT(journal.last()->steps.all(),
                ElementsAre(UndoSteps::Moved{item("starý.txt"), item("nový.txt")}));
    EXPECT_EQ(undone(), "Přejmenování na „nový.txt“");
    EXPECT_TRUE(has("starý.txt"));
}

TEST_F(FileActionsTest, aRenameNeverReplacesAnything) {
    temp.file("readme", "small");
    temp.file("README", "large");
    temp.file("other");
    temp.link("dangling", "nowhere");
    EXPECT_EQ(renameFailure("readme", "other"), "„other“ už ve složce je.");
    EXPECT_EQ(renameFailure("readme", "dangling"), "„dangling“ už ve složce je.");
    EXPECT_EQ(renameFailure("readme", "a/b"), "Název nesmí obsahovat „/“.");
    // Two files, as case counts here; even two names of one file are two names.
    EXPECT_EQ(renameFailure("readme", "README"), "„README“ už ve složce je.");
    std::filesystem::create_hard_link(temp.path("other"), temp.path("OTHER"));
    EXPECT_EQ(renameFailure("other", "OTHER"), "„OTHER“ už ve složce je.");
    EXPECT_TRUE(has("other") && has("OTHER"));
    EXPECT_EQ(std::filesystem::file_size(temp.path("readme")), 5U);
    EXPECT_EQ(std::filesystem::file_size(temp.path("README")), 5U);
    EXPECT_FALSE(journal.last());
}

TEST_F(FileActionsTest, theSameNameIsNoAction) {
    temp.file("a.txt");
    temp.file(" blank ");
    EXPECT_EQ(FileActions::rename(item("a.txt"), "a.txt ", journal), item("a.txt"));
    EXPECT_EQ(FileActions::rename(item(" blank "), " blank ", journal), item(" blank "));
    EXPECT_TRUE(has(" blank "));
    EXPECT_FALSE(journal.last());
}

TEST_F(FileActionsTest, whereCaseDoesNotCountItCanBeChangedAndTakenBack) {
    const auto volume = TestVolume::withoutExclusiveRename(LetterCase::ignored);
    if (!volume)
        GTEST_SKIP() << volume.error();
    std::ofstream(volume->path("readme")) << "data";
    std::ofstream(volume->path("other")) << "other";
    const FileUrl readme(volume->path("readme"));
    EXPECT_EQ(FileActions::rename(readme, "OTHER", journal).error().message(),
              "„OTHER“ už ve složce je.");
    EXPECT_TRUE(FileActions::rename(readme, "README", journal));
    EXPECT_EQ(std::filesystem::file_size(volume->path("ReadMe")), 4U);
    EXPECT_EQ(undone(), "Přejmenování na „README“");
    EXPECT_EQ(std::filesystem::file_size(volume->path("ReadMe")), 4U);
    EXPECT_EQ(std::filesystem::file_size(volume->path("other")), 5U);
}

TEST_F(FileActionsTest, aRenameThatFailsSaysWhy) {
    temp.file("a.txt");
    const FaultInjection fault(
        {.calls = {SystemCall::renameat2}, .number = 1, .errorCode = EACCES});
    EXPECT_EQ(renameFailure("a.txt", "b.txt"),
              "„a.txt“ nejde přejmenovat: " + PosixError{EACCES}.reason());
    EXPECT_TRUE(has("a.txt"));
    EXPECT_FALSE(journal.last());
}

TEST_F(FileActionsTest, makesTheMissingLevelsOfAFolder) {
    temp.folder("x");
    EXPECT_EQ(FileActions::newFolder(temp.url(), "x/y//z", journal)->path(), temp.path("x/y/z"));
    ASSERT_TRUE(journal.last());
    EXPECT_THAT(journal.last()->steps.all(), SizeIs(1));
    EXPECT_EQ(undone(), "Nová složka „x/y//z“");
    EXPECT_TRUE(has("x"));
    EXPECT_FALSE(has("x/y"));
    EXPECT_TRUE(std::filesystem::is_directory(trashFolder.path("y/z")));
}

TEST_F(FileActionsTest, whatCannotBecomeAFolderChangesNothing) {
    temp.file("file");
    temp.link("dangling", "nowhere");
    for (const auto* name : {"  ", "..", "a/../b", "a/ /b", "/"})
        EXPECT_EQ(folderFailure(name), "Zadejte název.") << name;
    EXPECT_EQ(folderFailure("a/b:c"), "Název nesmí obsahovat dvojtečku.");
    EXPECT_EQ(folderFailure("file"), "Složka „file“ už existuje.");
    EXPECT_EQ(folderFailure("dangling"), "Složka „dangling“ už existuje.");
    EXPECT_THAT(folderFailure("file/a"), HasSubstr("Složku „file/a“ nejde vytvořit: "));
    EXPECT_FALSE(has("a"));
    EXPECT_FALSE(journal.last());
}

TEST_F(FileActionsTest, aFolderThatFailsHalfWayIsNotLeftHalf) {
    const auto struck = forEachCall(
        {.calls = {SystemCall::mkdirat, SystemCall::openat, SystemCall::fstatat, SystemCall::open},
         .errorCode = ENOSPC},
        {.prepare = [&] { std::filesystem::remove_all(temp.path("a")); },
         .act = [&] { static_cast<void>(FileActions::newFolder(temp.url(), "a/b/c", journal)); },
         .check =
             [&] {
                 EXPECT_EQ(has("a"), has("a/b/c"));
                 EXPECT_EQ(journal.last().has_value(), has("a"));
                 static_cast<void>(journal.undoLast(trash));
             }});
    EXPECT_GE(struck, 8);
}

TEST_F(FileActionsTest, whatDidNotGoToTheTrashIsToldAndTheRestTakenBack) {
    temp.file("a.txt", "a");
    temp.file("b.txt", "b");
    const auto result =
        FileActions::trash({item("a.txt"), item("missing"), item("b.txt")}, trash, journal);
    EXPECT_THAT(result.trashed, ElementsAre(item("a.txt"), item("b.txt")));
    EXPECT_THAT(result.failures,
                ElementsAre("„missing“ nejde přesunout do Koše: " + PosixError{ENOENT}.reason()));
    EXPECT_FALSE(has("a.txt"));
    EXPECT_EQ(undone(), "Přesun 2 položek do Koše");
    EXPECT_TRUE(has("a.txt") && has("b.txt"));

    FileActions::trash({item("a.txt"), item("missing")}, trash, journal);
    EXPECT_EQ(journal.lastTitle(), "Přesun do Koše „a.txt“");
    static_cast<void>(undone());
    FileActions::trash({item("missing")}, trash, journal);
    EXPECT_FALSE(journal.last());
}

} // namespace fennik::test
