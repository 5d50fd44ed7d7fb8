#include "core/operations/TransferChecks.h"

#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace fennik::test {

using TransferChecks::Verdict;

class TransferChecksTest : public testing::Test {
protected:
    Verdict check(const std::string& source, const std::string& destination) const {
        const auto path = [this](const std::string& place) {
            return FileUrl(place.starts_with('/') ? place : temp.path(place));
        };
        const TransferPair pair{path(source), path(destination)};
        OpenFolders folders;
        TransferPlaces places(folders);
        const auto from = FolderNode::at(folders, pair.source.parent()).value();
        const auto status = (*from->open())->status(std::string(pair.source.lastComponent()));
        return TransferChecks::check(pair, *from, status.value(),
                                     places.wayTo(pair.destination.parent()).value());
    }

    TempFolder temp;
};

TEST_F(TransferChecksTest, insideIsToldFromNextTo) {
    temp.folder("x/y");
    temp.folder("x-old");
    temp.file("file");
    EXPECT_EQ(check("x", "x/y"), Verdict::inside);
    EXPECT_EQ(check("x", "x/y/missing/levels/x"), Verdict::inside);
    EXPECT_EQ(check("x", "x-old"), Verdict::fine);
    EXPECT_EQ(check("x", "x-old/x"), Verdict::fine);
    EXPECT_EQ(check("x/y", "x"), Verdict::fine) << "what is to be merged with the folder above";
    EXPECT_EQ(check("file", "x/file"), Verdict::fine);
    EXPECT_TRUE(TransferChecks::isWrittenInside(FileUrl(), FileUrl("/x")));
    EXPECT_FALSE(TransferChecks::isWrittenInside(FileUrl(), FileUrl()));
}

TEST_F(TransferChecksTest, linksHideNothing) {
    temp.folder("x/y");
    temp.link("into", "x/y");
    temp.link("same", ".");
    temp.file("file");
    EXPECT_EQ(check("x", "into/x"), Verdict::inside);
    EXPECT_EQ(check("x", "into/new/x"), Verdict::inside);
    EXPECT_EQ(check("into", "x/into"), Verdict::fine) << "the link itself goes there";
    EXPECT_EQ(check("file", "file"), Verdict::samePath);
    EXPECT_EQ(check("same/file", "file"), Verdict::samePath);
    EXPECT_EQ(check("x", "same/x"), Verdict::samePath);
}

TEST_F(TransferChecksTest, hardLinksOfAFileAreDifferentItems) {
    temp.file("a");
    temp.folder("x");
    std::filesystem::create_hard_link(temp.path("a"), temp.path("b"));
    std::filesystem::create_hard_link(temp.path("a"), temp.path("x/a"));
    EXPECT_EQ(check("a", "b"), Verdict::fine);
    EXPECT_EQ(check("a", "x/a"), Verdict::fine);
}

TEST_F(TransferChecksTest, boundFoldersAreTheOnesTheyShow) {
    temp.folder("x/y");
    temp.file("x/file");
    const auto whole = TestVolume::boundTo(temp.path("x"));
    if (!whole)
        GTEST_SKIP() << whole.error();
    EXPECT_EQ(check("x", whole->path("x")), Verdict::inside);
    EXPECT_EQ(check("x/file", whole->path("file")), Verdict::samePath);
    EXPECT_EQ(check("x/y", whole->path("y")), Verdict::samePath);
}

TEST_F(TransferChecksTest, aNameInOtherLettersIsTheSameWhereCaseDoesNotCount) {
    const auto volume = TestVolume::withoutExclusiveRename(LetterCase::ignored);
    if (!volume)
        GTEST_SKIP() << volume.error();
    std::filesystem::create_directory(volume->path("readme"));
    std::filesystem::create_directory(volume->path("other"));
    EXPECT_EQ(check(volume->path("readme"), volume->path("README")), Verdict::samePath);
    EXPECT_EQ(check(volume->path("readme"), volume->path("OTHER")), Verdict::fine);
}

} // namespace fennik::test
