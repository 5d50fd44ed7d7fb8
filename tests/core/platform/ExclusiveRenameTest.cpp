#include "core/platform/OpenFolder.h"

#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <list>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::Contains;
using testing::Pair;

OpenFolder opened(const std::string& path, FollowLinks follow = FollowLinks::no) {
    return OpenFolder::open(path, follow).value();
}

void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

int codeOf(const std::expected<void, PosixError>& result) {
    return result ? 0 : result.error().code;
}

/// Where a rename is tried, and what the system refuses to do there.
struct Ground {
    std::string name = {};
    std::function<TestVolume::Made()> make = {}; ///< none: the folder for temporary files
    std::vector<Fault> lacks = {};
    bool isServed = false; ///< by a process that takes not every name and uses inodes anew
    int calls = 5;         ///< that a rename takes at least
};

void PrintTo(const Ground& ground, std::ostream* stream) {
    *stream << ground.name;
}

const Fault noExclusiveRename{.calls = {SystemCall::renameat2}, .errorCode = EINVAL};
const Fault noHardLinks{.calls = {SystemCall::linkat}, .errorCode = EPERM};

const Ground grounds[] = {
    {.name = "memory", .make = [] { return TestVolume::memory("4m"); }, .calls = 1},
    {.name = "disk", .make = [] { return TestVolume::ext4(); }, .calls = 1},
    {.name = "served",
     .make = [] { return TestVolume::withoutExclusiveRename(); },
     .isServed = true},
    {.name = "byLink", .lacks = {noExclusiveRename}},
    {.name = "byOwnFile", .lacks = {noExclusiveRename, noHardLinks}},
};

} // namespace

class ExclusiveRenameTest : public testing::TestWithParam<Ground> {
protected:
    void SetUp() override {
        if (GetParam().make) {
            auto made = GetParam().make();
            if (!made)
                GTEST_SKIP() << made.error();
            volume.emplace(std::move(*made));
        }
        root = volume ? volume->path("root") : temp.path("root");
        for (const auto& fault : GetParam().lacks)
            lacks.emplace_back(fault);
        rebuild();
    }

    /// Only these two folders, and in "from" the items that are to be renamed.
    void rebuild() {
        from = opened("/"); // some volumes keep a folder as long as it is open
        to = opened("/");
        std::filesystem::remove_all(root);
        std::filesystem::create_directories(root + "/from/folder/inner");
        std::filesystem::create_directories(root + "/to");
        write(root + "/from/folder/inner/file", "deep");
        write(root + "/from/file", "content");
        std::filesystem::create_symlink("nowhere", root + "/from/link");
        mkfifo((root + "/from/pipe").c_str(), 0600);
        from = opened(root + "/from");
        to = opened(root + "/to");
    }

    std::expected<void, PosixError> rename(const std::string& name,
                                           const std::string& newName = "new") const {
        return renameExclusively(from, name, to, newName);
    }

    TempFolder temp;
    std::optional<TestVolume> volume;
    std::list<FaultInjection> lacks;
    std::string root;
    OpenFolder from = opened("/");
    OpenFolder to = opened("/");
};

INSTANTIATE_TEST_SUITE_P(Everywhere, ExclusiveRenameTest, testing::ValuesIn(grounds),
                         [](const auto& ground) { return ground.param.name; });

TEST_P(ExclusiveRenameTest, movesTheItemItselfWhateverItIsAndIsCalled) {
    std::vector<std::string> names{"č\n\"x\" -", std::string(200, 'x')};
    if (!GetParam().isServed)
        names.insert(names.end(), {"\xFF\xFE", " ", std::string(255, 'x')});
    const auto before = diskTree(root);
    for (const std::string item : {"file", "folder", "link", "pipe"}) {
        for (const auto& name : names) {
            const auto was = from.status(item).value();
            ASSERT_EQ(codeOf(rename(item, name)), 0) << item << " to " << name;
            const auto is = to.status(name).value();
            EXPECT_EQ(is.identity(), was.identity());
            EXPECT_EQ(is.names, was.names);
            EXPECT_EQ(codeOf(renameExclusively(to, name, from, item)), 0);
        }
    }
    EXPECT_EQ(codeOf(rename("missing")), ENOENT);
    EXPECT_EQ(codeOf(rename("file", std::string(256, 'x'))), ENAMETOOLONG);
    EXPECT_EQ(diskTree(root), before);
}

TEST_P(ExclusiveRenameTest, replacesNothing) {
    write(root + "/to/file", "other");
    std::filesystem::create_directory(root + "/to/empty");
    std::filesystem::create_symlink("nowhere", root + "/to/dangling");
    const auto before = diskTree(root);
    for (const std::string item : {"file", "folder", "link", "pipe"}) {
        for (const std::string name : {"file", "empty", "dangling"})
            EXPECT_EQ(codeOf(rename(item, name)), EEXIST) << item << " to " << name;
        EXPECT_EQ(codeOf(renameExclusively(from, item, from, item)), EEXIST) << item;
    }
    EXPECT_EQ(diskTree(root), before);
}

TEST_P(ExclusiveRenameTest, putsNoFolderIntoItself) {
    std::filesystem::create_symlink(root + "/from/folder/inner", temp.path("way in"));
    const auto before = diskTree(root);
    for (const auto& inside :
         {root + "/from/folder", root + "/from/folder/inner", temp.path("way in")}) {
        const auto place = opened(inside, FollowLinks::yes);
        EXPECT_EQ(codeOf(renameExclusively(from, "folder", place, "new")), EINVAL) << inside;
    }
    EXPECT_EQ(diskTree(root), before);
}

TEST_P(ExclusiveRenameTest, aSecondPlaceOfTheVolumeIsAnotherVolume) {
    const auto bound = TestVolume::boundTo(root + "/from/folder");
    if (!bound)
        GTEST_SKIP() << bound.error();
    const auto before = diskTree(root);
    const auto second = opened(bound->path());
    const bool knowsAtOnce = GetParam().lacks.empty();
    EXPECT_EQ(codeOf(renameExclusively(from, "file", second, "new")), EXDEV);
    EXPECT_EQ(codeOf(renameExclusively(from, "link", second, "new")), EXDEV);
    EXPECT_EQ(codeOf(renameExclusively(from, "folder", second, "new")),
              knowsAtOnce ? EXDEV : EINVAL); // which is into itself as well
    EXPECT_EQ(diskTree(root), before);
}

TEST_P(ExclusiveRenameTest, everyFailureLeavesWhatWasAndEverySuccessWhatShallBe) {
    for (const std::string item : {"file", "folder", "link"}) {
        SCOPED_TRACE(item);
        rebuild();
        const auto before = diskTree(root);
        ASSERT_EQ(codeOf(rename(item)), 0);
        const auto after = diskTree(root);
        std::expected<void, PosixError> result;
        const Trial trial{
            .prepare = [this] { rebuild(); },
            .act = [this, &result, &item] { result = rename(item); },
            .check = [this, &before, &after,
                      &result] { EXPECT_EQ(diskTree(root), result ? after : before); }};
        for (const int errorCode : {EIO, EPERM, EINVAL})
            EXPECT_GE(forEachCall({.errorCode = errorCode}, trial), GetParam().calls) << errorCode;
    }
}

TEST_P(ExclusiveRenameTest, anEndAtAnyCallLeavesTheItemWhole) {
    for (const std::string item : {"file", "folder"}) {
        SCOPED_TRACE(item);
        const std::string path = item == "file" ? "" : "/inner/file";
        const std::string content = item == "file" ? "content" : "deep";
        EXPECT_GE(forEachCall({.endsProcess = true},
                              {.prepare = [this] { rebuild(); },
                               .act = [this, &item] { static_cast<void>(rename(item)); },
                               .check =
                                   [this, &item, &path, &content] {
                                       const auto left = diskTree(root);
                                       const bool atOld = left.contains("from/" + item + path);
                                       EXPECT_THAT(
                                           left,
                                           Contains(Pair((atOld ? "from/" + item : "to/new") + path,
                                                         content)));
                                   }}),
                  GetParam().calls);
    }
}

TEST_P(ExclusiveRenameTest, whoTakesTheNameMeanwhileKeepsIt) {
    for (const std::string item : {"file", "folder", "link"}) {
        SCOPED_TRACE(item);
        bool tookIt = false;
        std::expected<void, PosixError> result;
        const auto takeIt = [this, &tookIt] {
            const int file = open((root + "/to/new").c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
            tookIt = file >= 0;
            if (tookIt) {
                EXPECT_EQ(::write(file, "stranger", 8), 8);
                close(file);
            }
        };
        rebuild();
        const auto before = diskTree(root);
        EXPECT_GE(forEachCall({.before = takeIt},
                              {.prepare =
                                   [this, &tookIt] {
                                       rebuild();
                                       tookIt = false;
                                   },
                               .act = [this, &result, &item] { result = rename(item); },
                               .check =
                                   [this, &tookIt, &result, &before] {
                                       if (!tookIt) {
                                           EXPECT_TRUE(result);
                                           return;
                                       }
                                       auto expected = before;
                                       expected["to/new"] = "stranger";
                                       EXPECT_EQ(codeOf(result), EEXIST);
                                       EXPECT_EQ(diskTree(root), expected);
                                   }}),
                  GetParam().calls);
    }
}

TEST_P(ExclusiveRenameTest, whoChangesTheEntryMadeForTheItemLosesNothing) {
    const auto place = root + "/to/new";
    bool changed = false;
    const auto replace = [&place, &changed] {
        const bool isFolder = std::filesystem::is_directory(place);
        changed = std::filesystem::remove(place);
        if (isFolder)
            std::filesystem::create_directory(place);
        else
            write(place, "stranger");
    };
    const auto use = [&place, &changed] {
        changed = true;
        write(std::filesystem::is_directory(place) ? place + "/inner" : place, "stranger");
    };
    std::vector<std::function<void()>> changes{use};
    if (!GetParam().isServed)
        changes.emplace_back(replace);
    for (const std::string item : {"file", "folder"}) {
        for (const auto& change : changes) {
            SCOPED_TRACE(item);
            rebuild();
            auto expected = diskTree(root);
            changed = false;
            const FaultInjection stranger(
                {.calls = {SystemCall::fstat}, .number = 1, .before = change});
            const auto result = rename(item);
            const bool makesEntry =
                item == "folder" ? GetParam().calls > 1 : GetParam().lacks.size() > 1;
            ASSERT_EQ(changed, makesEntry);
            if (!changed)
                continue;
            EXPECT_EQ(codeOf(result), EEXIST);
            expected["to/new"] = item == "folder" ? "folder/" : "stranger";
            if (item == "folder" && &change == &changes.front())
                expected["to/new/inner"] = "stranger";
            EXPECT_EQ(diskTree(root), expected);
        }
    }
}

TEST_P(ExclusiveRenameTest, whoTakesTheOldNameMeanwhileKeepsItsContent) {
    bool exchanged = false;
    const auto exchange = [this, &exchanged] {
        exchanged = true;
        std::error_code gone;
        std::filesystem::rename(root + "/from/file", root + "/from/aside", gone);
        write(root + "/from/file", "stranger");
    };
    const int struck =
        forEachCall({.calls = {SystemCall::fstatat, SystemCall::renameat2}, .before = exchange},
                    {.prepare =
                         [this, &exchanged] {
                             rebuild();
                             exchanged = false;
                         },
                     .act = [this] { static_cast<void>(rename("file")); },
                     .check =
                         [this, &exchanged] {
                             std::vector<std::string> contents;
                             for (const auto& [path, content] : diskTree(root))
                                 contents.push_back(content);
                             EXPECT_THAT(contents, Contains("content"));
                             EXPECT_EQ(std::ranges::count(contents, "stranger") > 0, exchanged);
                         }});
    EXPECT_GE(struck, GetParam().calls > 1 ? 3 : 1);
}

} // namespace fennik::test
