#include "tests/support/TempFolder.h"

#include "core/platform/FileSystem.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fennik::test {

namespace {

struct Facts {
    FileType type;
    std::int64_t size;
    Date modified;
    std::uint16_t mode;

    friend bool operator==(const Facts&, const Facts&) = default;
};

using Folder = std::map<std::string, Facts>;
using Read = FileSystem::Result<void> (FileSystem::*)(const std::string&,
                                                      const FolderEntryConsumer&) const;

std::expected<Folder, PosixError> readAll(Read read, const std::string& path) {
    Folder folder;
    const auto result = (systemFileSystem().*read)(path, [&folder](const FolderEntry& entry) {
        const auto [_, isNew] = folder.try_emplace(
            std::string(entry.name), Facts{entry.type, entry.size, entry.modified, entry.mode});
        EXPECT_TRUE(isNew) << "twice: " << entry.name;
    });
    if (!result)
        return std::unexpected(result.error());
    return folder;
}

std::string strangeName(int number) {
    switch (number % 5) {
    case 0:
        return "line\nbreak " + std::to_string(number);
    case 1:
        return "\xFF\xC4 invalid " + std::to_string(number);
    case 2:
        return std::to_string(number) + std::string(240, 'x');
    default:
        return "č " + std::to_string(number);
    }
}

} // namespace

/// Both ways to read a folder have to agree on everything.
class ReadFolderTest : public testing::TestWithParam<Read> {
protected:
    TempFolder temp;
};

INSTANTIATE_TEST_SUITE_P(BothWays, ReadFolderTest,
                         testing::Values(&FileSystem::readFolder, &FileSystem::enumerateFolder),
                         [](const auto& way) { return way.index == 0 ? "bulk" : "stream"; });

TEST_P(ReadFolderTest, givesTheFactsOfEveryKind) {
    temp.file("data", "12345");
    chmod(temp.path("data").c_str(), 04751);
    const timespec times[2] = {{0, 0}, {-3, 999'999'999}};
    utimensat(AT_FDCWD, temp.path("data").c_str(), times, 0);
    temp.folder("folder");
    temp.link("link", "nowhere");
    mkfifo(temp.path("pipe").c_str(), 0600);

    auto folder = readAll(GetParam(), temp.url().path());
    ASSERT_TRUE(folder);
    EXPECT_EQ((*folder)["data"], (Facts{FileType::regular, 5, {-3, 999'999'999}, 04751}));
    EXPECT_EQ((*folder)["folder"].type, FileType::directory);
    EXPECT_EQ((*folder)["folder"].size, 0);
    EXPECT_EQ((*folder)["link"].type, FileType::symlink);
    EXPECT_EQ((*folder)["pipe"].type, FileType::other);
    EXPECT_EQ(folder->size(), 4U);
}

TEST_P(ReadFolderTest, readsManyStrangeNamesByteByByte) {
    constexpr int count = 9'000; // several buffers and blocks, so two threads
    for (int i = 0; i < count; ++i)
        temp.file(strangeName(i), std::string(static_cast<std::size_t>(i % 7), 'x'));
    const auto folder = readAll(GetParam(), temp.url().path());
    ASSERT_TRUE(folder);
    ASSERT_EQ(folder->size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(folder->at(strangeName(i)).size, i % 7) << i;
}

TEST_P(ReadFolderTest, saysWhyAFolderCannotBeRead) {
    temp.file("file");
    mkfifo(temp.path("pipe").c_str(), 0600);
    temp.link("loop", "loop");
    temp.folder("locked");
    chmod(temp.path("locked").c_str(), 0);
    const auto errorOf = [this](std::string_view name) {
        const auto folder = readAll(GetParam(), temp.path(name));
        return folder ? 0 : folder.error().code;
    };
    EXPECT_EQ(errorOf("missing"), ENOENT);
    EXPECT_EQ(errorOf("file"), ENOTDIR);
    EXPECT_EQ(errorOf("pipe"), ENOTDIR);
    EXPECT_EQ(errorOf("loop"), ELOOP);
    EXPECT_TRUE(asOrdinaryUser([&] { return errorOf("locked") == EACCES; }));
}

TEST_P(ReadFolderTest, stillNamesWhatTheRightsForbidToExamine) {
    temp.folder("half");
    temp.file("half/file", "123");
    temp.folder("half/folder");
    chmod(temp.path("half").c_str(), 0444);
    EXPECT_TRUE(asOrdinaryUser([this] {
        const auto folder = readAll(GetParam(), temp.path("half"));
        const Facts file{FileType::regular, 0, Date::distantPast(), 0};
        const Facts inner{FileType::directory, 0, Date::distantPast(), 0};
        return folder && *folder == Folder{{"file", file}, {"folder", inner}};
    }));
    chmod(temp.path("half").c_str(), 0755);
}

TEST_P(ReadFolderTest, readsLargeFoldersWithoutASecondThread) {
    constexpr int count = 6'000;
    for (int i = 0; i < count; ++i)
        temp.file(std::to_string(i));
    EXPECT_TRUE(asOrdinaryUser([this] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_NPROC, &none);
        const auto folder = readAll(GetParam(), temp.url().path());
        return folder && folder->size() == static_cast<std::size_t>(count);
    }));
}

TEST_P(ReadFolderTest, aFolderThatChangesWhileItIsReadLosesNothingThatStays) {
    constexpr int staying = 5'000;
    for (int i = 0; i < staying; ++i)
        temp.file("stays " + std::to_string(i));
    const std::jthread changer([this](const std::stop_token& stop) {
        for (int i = 0; !stop.stop_requested(); i = (i + 1) % 500) {
            temp.file("comes " + std::to_string(i));
            unlink(temp.path("comes " + std::to_string((i + 250) % 500)).c_str());
        }
    });
    for (int round = 0; round < 5; ++round) {
        const auto folder = readAll(GetParam(), temp.url().path());
        ASSERT_TRUE(folder);
        const auto found = std::ranges::count_if(
            *folder, [](const auto& entry) { return entry.first.starts_with("stays "); });
        EXPECT_EQ(found, staying);
    }
}

TEST_P(ReadFolderTest, readsTheKernelsOwnFolders) {
    const auto processes = readAll(GetParam(), "/proc");
    ASSERT_TRUE(processes);
    EXPECT_EQ(processes->at("self").type, FileType::symlink);
    EXPECT_TRUE(readAll(GetParam(), "/proc/self/fd"));
    EXPECT_TRUE(readAll(GetParam(), "/dev"));
}

TEST(ReadSizesTest, givesSizesOfRegularFilesOnlyAndStopsWhenTold) {
    const TempFolder temp;
    temp.file("data", "12345");
    temp.folder("folder");
    temp.link("link", "data");
    std::map<std::string, std::pair<FileType, std::int64_t>> seen;
    const auto consume = [&seen](const SizeEntry& entry) {
        seen[std::string(entry.name)] = {entry.type, entry.size};
        return Reading::goOn;
    };
    ASSERT_TRUE(systemFileSystem().readSizes(temp.url().path(), FollowLinks::no, consume));
    EXPECT_EQ(seen, (decltype(seen){{"data", {FileType::regular, 5}},
                                    {"folder", {FileType::directory, 0}},
                                    {"link", {FileType::symlink, 0}}}));
    int entries = 0;
    EXPECT_TRUE(systemFileSystem().readSizes(temp.url().path(), FollowLinks::no,
                                             [&entries](const SizeEntry&) {
                                                 ++entries;
                                                 return Reading::stop;
                                             }));
    EXPECT_EQ(entries, 1);
    temp.link("to folder", "folder");
    const auto errorOf = [&](FollowLinks follow) {
        const auto read = systemFileSystem().readSizes(temp.path("to folder"), follow, consume);
        return read ? 0 : read.error().code;
    };
    EXPECT_EQ(errorOf(FollowLinks::yes), 0);
    EXPECT_EQ(errorOf(FollowLinks::no), ENOTDIR);
}

} // namespace fennik::test
