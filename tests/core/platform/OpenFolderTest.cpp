#include "core/platform/OpenFolder.h"

#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace fennik::test {

namespace {

using testing::AnyOf;
using Tree = std::map<std::string, std::string>;

OpenFolder opened(const std::string& path) {
    return OpenFolder::open(path, FollowLinks::no).value();
}

} // namespace

class OpenFolderTest : public testing::Test {
protected:
    TempFolder temp;
};

TEST_F(OpenFolderTest, reachesItsOwnEntriesThroughNoLinkAndWaitsForNobody) {
    temp.folder("real/inner");
    temp.link("link", temp.path("real"));
    temp.file("file");
    mkfifo(temp.path("pipe").c_str(), 0600);
    const auto folder = opened(temp.url().path());
    EXPECT_TRUE(folder.openChild("real"));
    for (const std::string name : {"link", "file", "pipe", "missing"}) {
        const auto child = folder.openChild(name);
        EXPECT_THAT(child ? 0 : child.error().code,
                    testing::AnyOf(ENOTDIR, ELOOP, name == "missing" ? ENOENT : ENOTDIR))
            << name;
        EXPECT_FALSE(OpenFolder::open(temp.path(name), FollowLinks::no)) << name;
    }
    EXPECT_EQ(OpenFolder::open(temp.path("link"), FollowLinks::yes)->status()->identity(),
              folder.status("real")->identity());
    EXPECT_TRUE(folder.syncFile("pipe"));
    EXPECT_TRUE(folder.syncFile("link"));

    // Whoever exchanges the folder for a link leads nobody elsewhere.
    const auto held = opened(temp.path("real"));
    temp.folder("elsewhere");
    std::filesystem::rename(temp.path("real"), temp.path("moved"));
    temp.link("real", temp.path("elsewhere"));
    EXPECT_TRUE(held.makeFile("new", "content", 0600));
    EXPECT_TRUE(held.removeFolder("inner"));
    EXPECT_EQ(diskTree(temp.path("moved")), (Tree{{"new", "content"}}));
    EXPECT_EQ(diskTree(temp.path("elsewhere")), Tree{});
}

TEST_F(OpenFolderTest, saysWhatItsEntriesAre) {
    temp.file("file", "12345");
    temp.link("link", std::string(1000, 'x'));
    mkfifo(temp.path("pipe").c_str(), 0600);
    std::filesystem::create_hard_link(temp.path("file"), temp.path("\xFF\n second"));
    const timespec times[2] = {{0, 0}, {-3, 999'999'999}};
    utimensat(AT_FDCWD, temp.path("file").c_str(), times, 0);
    const auto folder = opened(temp.url().path());

    const auto file = folder.status("file");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->names, 2U);
    EXPECT_EQ(file->owner, geteuid());
    EXPECT_EQ(file->modified, (Date{-3, 999'999'999}));
    EXPECT_GT(file->statusChanged, (Date{1'600'000'000, 0})); // the clock's, not the file's own
    EXPECT_FALSE(file->isPipe);
    EXPECT_TRUE(folder.status("pipe")->isPipe);
    EXPECT_EQ(folder.linkTarget("link"), std::string(1000, 'x'));
    const auto entries = folder.entries();
    ASSERT_TRUE(entries);
    std::map<std::string, FileType> types;
    for (const auto& [name, type] : *entries)
        types[name] = type;
    EXPECT_EQ(types, (std::map<std::string, FileType>{{"file", FileType::regular},
                                                      {"\xFF\n second", FileType::regular},
                                                      {"link", FileType::symlink},
                                                      {"pipe", FileType::other}}));
}

TEST_F(OpenFolderTest, aFolderReadInPartIsNotRead) {
    for (int i = 0; i < 100; ++i)
        temp.file(std::to_string(i));
    const auto folder = opened(temp.url().path());
    const auto size = [&folder] {
        const auto entries = folder.entries();
        return entries ? entries->size() : 0;
    };
    EXPECT_EQ(size(), 100U);
    std::size_t found = 0;
    const int struck =
        forEachCall({.calls = {SystemCall::openat, SystemCall::fdopendir, SystemCall::readdir},
                     .errorCode = EIO},
                    {.prepare = [&found] { found = 0; },
                     .act = [&] { found = size(); },
                     .check = [&found] { EXPECT_THAT(found, AnyOf(0U, 100U)); }});
    EXPECT_EQ(struck, 105); // the last one says that there is no more
    EXPECT_EQ(found, 100U);
}

TEST_F(OpenFolderTest, takesTheWholeVolumeWhereOneItemCannotBeSynced) {
    temp.file("unreadable", "content");
    chmod(temp.path("unreadable").c_str(), 0200);
    temp.file("file", "content");
    chmod(temp.url().path().c_str(), 0777);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const FaultInjection volumes({.calls = {SystemCall::syncfs}});
        return opened(temp.url().path()).syncFile("unreadable") && volumes.calls() == 1;
    }));
    const auto folder = opened(temp.url().path());
    {
        const FaultInjection failing({.calls = {SystemCall::fsync}, .errorCode = EIO});
        EXPECT_FALSE(folder.syncFile("file"));
        EXPECT_FALSE(folder.sync());
    }
    const FaultInjection unknown({.calls = {SystemCall::fsync}, .errorCode = EINVAL});
    const FaultInjection volumes({.calls = {SystemCall::syncfs}});
    EXPECT_TRUE(folder.sync());
    EXPECT_EQ(volumes.calls(), 1);
    const FaultInjection failing({.calls = {SystemCall::syncfs}, .errorCode = EIO});
    EXPECT_FALSE(folder.sync());
}

TEST_F(OpenFolderTest, aVolumeBehindAProcessIsNotSyncedAsAWhole) {
    const auto served = TestVolume::withoutExclusiveRename();
    if (!served)
        GTEST_SKIP() << served.error();
    const auto folder = opened(served->path());
    EXPECT_EQ(folder.syncVolume().error().code, ENOTSUP);
    ASSERT_TRUE(folder.makeFile("file", "content", 0600));
    EXPECT_TRUE(folder.syncFile("file"));
    EXPECT_TRUE(folder.sync());
    EXPECT_TRUE(opened(temp.url().path()).syncVolume());
}

TEST_F(OpenFolderTest, whoMayNotListAFolderReachesItsEntriesByTheirNames) {
    temp.folder("folder/inner");
    temp.file("folder/old", "content");
    temp.file("outside");
    temp.link("link", temp.path("folder"));
    for (const auto* hidden : {"folder", "folder/inner"})
        chmod(temp.path(hidden).c_str(), 0333);
    chmod(temp.url().path().c_str(), 0777);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const auto folder = OpenFolder::open(temp.path("folder"), FollowLinks::no);
        const auto inner = folder ? folder->openChild("inner") : OpenFolder::open("/", {});
        return inner && folder->entries().error().code == EACCES && folder->status("old") &&
               folder->makeFile("file", "content", 0600) && folder->makeFolder("new", 0700) &&
               renameExclusively(*folder, "file", *inner, "renamed") &&
               folder->removeFolder("new") && inner->removeFile("renamed") && folder->sync() &&
               inner->sync() && folder->syncFile("old") && !folder->openChild("old") &&
               folder->syncVolume().error().code == ENOTSUP &&
               !OpenFolder::open(temp.path("link"), FollowLinks::no);
    }));
    EXPECT_EQ(diskTree(temp.url().path()).size(), 5U);
}

TEST_F(OpenFolderTest, aNewFileIsCompleteOrNotThereWhateverFails) {
    const std::string content(1000, 'x');
    std::expected<void, PosixError> made;
    const Trial trial{
        .prepare = [&] { std::filesystem::remove(temp.path("new")); },
        .act = [&] { made = opened(temp.url().path()).makeFile("new", content, 0600); },
        .check =
            [&] {
                EXPECT_EQ(diskTree(temp.url().path()), made ? (Tree{{"new", content}}) : Tree{});
            }};
    EXPECT_GE(forEachCall({.calls = {SystemCall::openat, SystemCall::write, SystemCall::fsync,
                                     SystemCall::unlinkat},
                           .errorCode = ENOSPC},
                          trial),
              3);
    // What is small, and what a signal interrupts, goes on.
    const FaultInjection inPieces({.calls = {SystemCall::write}, .mostBytes = 7});
    const FaultInjection interrupted(
        {.calls = {SystemCall::write}, .number = 3, .errorCode = EINTR});
    trial.prepare();
    trial.act();
    ASSERT_TRUE(made);
    EXPECT_EQ(inPieces.calls(), 144);
    trial.check();
}

TEST_F(OpenFolderTest, anEndedProcessLeavesThePartOfAFileUnderItsOwnNameOnly) {
    temp.file("other", "stays");
    const int struck = forEachCall(
        {.endsProcess = true},
        {.prepare = [&] { std::filesystem::remove(temp.path("new")); },
         .act =
             [&] { static_cast<void>(opened(temp.url().path()).makeFile("new", "content", 0600)); },
         .check = [&] { EXPECT_EQ(diskTree(temp.url().path()).at("other"), "stays"); }});
    EXPECT_GE(struck, 4); // the folder, the file, its data, the disk
    EXPECT_EQ(diskTree(temp.url().path()), (Tree{{"new", "content"}, {"other", "stays"}}));
}

TEST_F(OpenFolderTest, fullAndProtectedVolumesKeepNothingOfANewFile) {
    const auto small = TestVolume::memory("64k");
    const auto crowded = TestVolume::memory("1m", 3);
    const auto locked = TestVolume::btrfs();
    for (const auto* volume : {&small, &crowded, &locked})
        if (!*volume)
            GTEST_SKIP() << volume->error();
    const auto codeOfNew = [](const TestVolume& volume, const std::string& content) {
        const auto made = opened(volume.path()).makeFile("new", content, 0600);
        return made ? 0 : made.error().code;
    };
    EXPECT_EQ(codeOfNew(*small, std::string(100'000, 'x')), ENOSPC);
    EXPECT_EQ(diskTree(small->path()), Tree{});

    std::filesystem::create_directories(crowded->path("a/b"));
    EXPECT_EQ(codeOfNew(*crowded, ""), ENOSPC);
    EXPECT_EQ(diskTree(crowded->path()), (Tree{{"a", "folder/"}, {"a/b", "folder/"}}));

    ASSERT_TRUE(opened(locked->path()).makeFile("old", "old", 0600));
    ASSERT_TRUE(locked->makeReadOnly());
    EXPECT_EQ(codeOfNew(*locked, "new"), EROFS);
    const auto folder = opened(locked->path());
    EXPECT_EQ(renameExclusively(folder, "old", folder, "new").error().code, EROFS);
    EXPECT_EQ(folder.removeFile("old").error().code, EROFS);
    EXPECT_EQ(diskTree(locked->path()), (Tree{{"old", "old"}}));
}

} // namespace fennik::test
