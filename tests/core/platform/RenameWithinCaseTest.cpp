#include "core/platform/OpenFolder.h"

#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>

namespace fennik::test {

namespace {

using Tree = std::map<std::string, std::string>;

OpenFolder opened(const std::string& path) {
    return OpenFolder::open(path, FollowLinks::no).value();
}

int codeOf(const std::expected<void, PosixError>& result) {
    return result ? 0 : result.error().code;
}

} // namespace

class RenameWithinCaseTest : public testing::Test {
protected:
    int rename(const std::string& name, const std::string& newName) const {
        return codeOf(renameWithinCase(folder, name, newName));
    }

    TempFolder temp;
    OpenFolder folder = opened(temp.url().path());
};

TEST_F(RenameWithinCaseTest, twoFilesThatDifferInCaseOnlyStayTwo) {
    temp.file("readme", "small");
    temp.file("README", "large");
    EXPECT_EQ(rename("readme", "README"), EEXIST);
    temp.file("one", "one item");
    std::filesystem::create_hard_link(temp.path("one"), temp.path("ONE"));
    EXPECT_EQ(rename("one", "ONE"), EEXIST);
    EXPECT_EQ(
        diskTree(temp.url().path()),
        (Tree{{"readme", "small"}, {"README", "large"}, {"one", "one item"}, {"ONE", "one item"}}));
    EXPECT_EQ(rename("readme", "Readme"), 0);
    EXPECT_EQ(rename("readme", "other"), ENOENT);
    EXPECT_EQ(diskTree(temp.url().path()).at("Readme"), "small");
}

/// The rename between two names of one item does nothing on some systems, as this volume shows.
class IgnoredCaseTest : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        auto made = TestVolume::withoutExclusiveRename(LetterCase::ignored);
        if (!made)
            GTEST_SKIP() << made.error();
        volume.emplace(std::move(*made));
        std::filesystem::create_directory(volume->path("root"));
        folder = opened(volume->path("root"));
    }

    void rebuild() const {
        for (const auto& entry : std::filesystem::directory_iterator(volume->path("root")))
            std::filesystem::remove_all(entry.path());
        EXPECT_TRUE(folder.makeFile("other", "other", 0600));
        if (GetParam() == "folder")
            EXPECT_TRUE(folder.makeFolder("readme", 0700));
        else
            EXPECT_TRUE(folder.makeFile("readme", "content", 0600));
    }

    std::optional<TestVolume> volume;
    OpenFolder folder = opened("/");
};

INSTANTIATE_TEST_SUITE_P(Items, IgnoredCaseTest, testing::Values("file", "folder"),
                         [](const auto& item) { return item.param; });

TEST_P(IgnoredCaseTest, anotherSpellingIsNoOtherItemAndOtherItemsStay) {
    rebuild();
    const auto item = folder.status("readme")->identity();
    EXPECT_EQ(codeOf(renameWithinCase(folder, "readme", "README")), 0);
    EXPECT_EQ(folder.status("README")->identity(), item);
    const auto before = diskTree(volume->path("root"));
    EXPECT_EQ(codeOf(renameWithinCase(folder, "readme", "OTHER")), EEXIST);
    EXPECT_EQ(codeOf(renameExclusively(folder, "readme", folder, "README")), EEXIST);
    EXPECT_EQ(diskTree(volume->path("root")), before);
}

TEST_P(IgnoredCaseTest, theItemSurvivesEveryFailureUnderOneOfTheNames) {
    rebuild();
    const auto before = diskTree(volume->path("root"));
    EXPECT_GE(
        forEachCall(
            {.errorCode = EIO},
            {.prepare = [this] { rebuild(); },
             .act = [this] { static_cast<void>(renameWithinCase(folder, "readme", "README")); },
             .check = [this, &before] { EXPECT_EQ(diskTree(volume->path("root")), before); }}),
        10);
}

} // namespace fennik::test
