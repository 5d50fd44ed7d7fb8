#include "core/platform/ItemCopy.h"

#include "core/platform/posix/ChunkSize.h"
#include "tests/support/DiskTree.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestVolume.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <numeric>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fennik::test {

namespace {

using Kind = CopyFailure::Kind;

OpenFolder opened(const std::string& path) {
    return OpenFolder::open(path, FollowLinks::no).value();
}

CopyStep goOn(std::int64_t) {
    return CopyStep::goOn;
}

struct stat statusOf(const std::string& path) {
    struct stat info{};
    EXPECT_EQ(0, lstat(path.c_str(), &info)) << path << ": " << errno;
    return info;
}

mode_t modeOf(const std::string& path) {
    return statusOf(path).st_mode & 07777U;
}

std::string attribute(const std::string& path, const char* name) {
    std::array<char, 256> value{};
    const auto length = lgetxattr(path.c_str(), name, value.data(), value.size());
    return length < 0 ? "none" : std::string(value.data(), static_cast<std::size_t>(length));
}

void setAttribute(const std::string& path, const char* name, const std::string& value) {
    ASSERT_EQ(0, setxattr(path.c_str(), name, value.data(), value.size(), 0)) << name;
}

/// An access list as the system keeps it: the owner, user 1 and the mask may do everything, nobody
/// else anything.
std::string accessListForUser1() {
    constexpr char all = -1;
    const auto entry = [](char tag, char rights, char user, char rest) {
        return std::string{tag, 0, rights, 0, user, rest, rest, rest};
    };
    return std::string{2, 0, 0, 0} + entry(0x01, 7, all, all) + entry(0x02, 7, 1, 0) +
           entry(0x04, 0, all, all) + entry(0x10, 7, all, all) + entry(0x20, 0, all, all);
}

void writeAt(const std::string& path, off_t offset, const std::string& bytes) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    EXPECT_EQ(std::ssize(bytes), pwrite(file, bytes.data(), bytes.size(), offset));
    EXPECT_EQ(0, close(file));
}

std::string bytesFrom(const std::string& path, off_t offset, std::size_t length) {
    std::string bytes(length, '?');
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(std::ssize(bytes), pread(file, bytes.data(), length, offset));
    close(file);
    return bytes;
}

/// Copies "s" to "d" in the folder, and notes what the progress is told.
class ItemCopyTest : public testing::Test {
protected:
    std::expected<CopiedItem, CopyFailure> copy(Cloning cloning = Cloning::forbidden) {
        return copyTo(folder.url().path(), cloning);
    }
    std::expected<CopiedItem, CopyFailure> copyTo(const std::string& target,
                                                  Cloning cloning = Cloning::forbidden) {
        told.clear();
        return copyItem(opened(folder.url().path()), "s", FileType::other, opened(target), "d",
                        cloning, [this](std::int64_t bytes) {
                            told.push_back(bytes);
                            return std::ssize(told) == stopAfter ? CopyStep::stop : CopyStep::goOn;
                        });
    }
    std::int64_t toldBytes() const { return std::accumulate(told.begin(), told.end(), 0LL); }

    TempFolder folder;
    const std::string s = folder.path("s");
    const std::string d = folder.path("d");
    std::vector<std::int64_t> told;
    std::ptrdiff_t stopAfter = -1;
};

void setTimes(const std::string& path) {
    const std::array<timespec, 2> times{{{1'000'000'000, 123'456'789}, {-5, 987'654'321}}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW));
}

void expectTimes(const std::string& path) {
    const auto made = statusOf(path);
    EXPECT_EQ(1'000'000'000, made.st_atim.tv_sec);
    EXPECT_EQ(123'456'789, made.st_atim.tv_nsec);
    EXPECT_EQ(-5, made.st_mtim.tv_sec);
    EXPECT_EQ(987'654'321, made.st_mtim.tv_nsec);
}

} // namespace

TEST_F(ItemCopyTest, whatHoldsItBackMakesTheStepsSmaller) {
    folder.file("s", std::string(3 << 20, 'x'));
    std::vector<std::int64_t> steps;
    const auto copied =
        copyItem(opened(folder.url().path()), "s", FileType::regular, opened(folder.url().path()),
                 "d", Cloning::forbidden, [&](std::int64_t bytes) {
                     // Ten megabytes in a second.
                     std::this_thread::sleep_for(std::chrono::nanoseconds(100) * bytes);
                     steps.push_back(bytes);
                     return CopyStep::goOn;
                 });
    ASSERT_TRUE(copied);
    EXPECT_LE(std::ranges::max(steps), 1 << 20) << "or who looks on would see it stand";
}

TEST_F(ItemCopyTest, keepsContentTimesModeAndAttributes) {
    folder.file("s", "obsah");
    setTimes(s);
    ASSERT_EQ(0, chmod(s.c_str(), 04751));
    setAttribute(s, "user.note", "x");
    setAttribute(s, "user.empty", "");
    setAttribute(s, "user.long", std::string(255, 'l'));
    const auto copied = copy();
    ASSERT_TRUE(copied);
    expectTimes(d);
    EXPECT_EQ("obsah", contentOf(d));
    EXPECT_EQ(04751U, modeOf(d));
    EXPECT_EQ("x", attribute(d, "user.note"));
    EXPECT_EQ("", attribute(d, "user.empty"));
    EXPECT_EQ(std::string(255, 'l'), attribute(d, "user.long"));
    EXPECT_EQ(statusOf(d).st_ino, copied->copy.inode);
    EXPECT_EQ(statusOf(d).st_mtim.tv_nsec, copied->copy.modified.nanoseconds);
    EXPECT_EQ(statusOf(d).st_size, copied->copy.size);
    EXPECT_EQ(statusOf(s).st_ino, copied->source.inode);
    EXPECT_EQ(5, toldBytes());
}

TEST_F(ItemCopyTest, letsInOnlyWhomTheSourceLetsIn) {
    folder.file("s", std::string(100'000, 'x'));
    ASSERT_EQ(0, chmod(s.c_str(), 0640));
    folder.folder("shared");
    const auto shared = folder.path("shared");
    setAttribute(shared, "system.posix_acl_default", accessListForUser1());
    std::vector<mode_t> modes;
    const auto from = opened(folder.url().path());
    const auto look = [&](std::int64_t bytes) {
        if (bytes > 0)
            modes.push_back(modeOf(shared + "/d"));
        return CopyStep::goOn;
    };
    ASSERT_TRUE(
        copyItem(from, "s", FileType::regular, opened(shared), "d", Cloning::allowed, look));
    EXPECT_THAT(modes, testing::AllOf(testing::Each(0600U), testing::Not(testing::IsEmpty())));
    EXPECT_EQ(0640U, modeOf(shared + "/d"));
    EXPECT_EQ("none", attribute(shared + "/d", "system.posix_acl_access"));

    setAttribute(s, "system.posix_acl_access", accessListForUser1());
    ASSERT_TRUE(copy());
    EXPECT_EQ(accessListForUser1(), attribute(d, "system.posix_acl_access"));
    EXPECT_EQ(0770U, modeOf(s));
    std::filesystem::remove(d);
    const FaultInjection listless({.calls = {SystemCall::fsetxattr}, .errorCode = EOPNOTSUPP});
    ASSERT_TRUE(copy());
    EXPECT_EQ(0700U, modeOf(d));
}

TEST_F(ItemCopyTest, givesAFolderWhatTheOtherHas) {
    folder.folder("a");
    folder.folder("b");
    const auto a = folder.path("a");
    const auto b = folder.path("b");
    setAttribute(a, "user.note", "x");
    setAttribute(b, "system.posix_acl_default", accessListForUser1());
    ASSERT_EQ(0, chmod(a.c_str(), 01511));
    setTimes(a);
    ASSERT_TRUE(copyFolderMetadata(opened(a), opened(b)));
    expectTimes(b);
    EXPECT_EQ(01511U, modeOf(b));
    EXPECT_EQ("x", attribute(b, "user.note"));
    EXPECT_EQ("none", attribute(b, "system.posix_acl_default"));
    setAttribute(a, "system.posix_acl_default", accessListForUser1());
    ASSERT_TRUE(copyFolderMetadata(opened(a), opened(b)));
    EXPECT_EQ(accessListForUser1(), attribute(b, "system.posix_acl_default"));
}

TEST_F(ItemCopyTest, keepsTheOwnerWhereItMayAndGivesNobodyAnothersRights) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root has files of two users";
    folder.file("s", "x");
    ASSERT_EQ(0, chown(s.c_str(), 1, 2));
    ASSERT_EQ(0, chmod(s.c_str(), 06755));
    ASSERT_TRUE(copy());
    EXPECT_EQ(1U, statusOf(d).st_uid);
    EXPECT_EQ(2U, statusOf(d).st_gid);
    EXPECT_EQ(06755U, modeOf(d));
    folder.folder("his");
    const auto his = folder.path("his");
    ASSERT_EQ(0, chmod(his.c_str(), 0777));
    EXPECT_TRUE(asOrdinaryUser([&] { return copyTo(his).has_value(); }));
    EXPECT_EQ(65534U, statusOf(his + "/d").st_uid);
    EXPECT_EQ(0755U, modeOf(his + "/d"));
}

TEST_F(ItemCopyTest, keepsHoles) {
    const auto volume = TestVolume::ext4();
    if (!volume)
        GTEST_SKIP() << volume.error();
    const std::string data(100'000, 'x');
    writeAt(s, 50 << 20, data);
    writeAt(s, 300 << 20, data);
    ASSERT_EQ(0, truncate(s.c_str(), 1 << 30));
    ASSERT_TRUE(copyTo(volume->path()));
    const auto made = statusOf(volume->path("d"));
    EXPECT_EQ(1 << 30, made.st_size);
    EXPECT_LE(made.st_blocks, statusOf(s).st_blocks * 2);
    EXPECT_EQ(data, bytesFrom(volume->path("d"), 50 << 20, data.size()));
    EXPECT_EQ(data + '\0', bytesFrom(volume->path("d"), 300 << 20, data.size() + 1));
    // Whole blocks are read, some of them zeros.
    EXPECT_LT(toldBytes(), 300'000);
}

TEST_F(ItemCopyTest, countsBeyondFourGibibytes) {
    writeAt(s, 5LL << 30, "konec");
    ASSERT_TRUE(copy());
    EXPECT_EQ((5LL << 30) + 5, statusOf(d).st_size);
    EXPECT_EQ("konec", bytesFrom(d, 5LL << 30, 5));
    EXPECT_LE(statusOf(d).st_blocks, statusOf(s).st_blocks * 2);
}

TEST_F(ItemCopyTest, clonesOnlyWhereThatIsAllowed) {
    const auto volume = TestVolume::btrfs();
    if (!volume)
        GTEST_SKIP() << volume.error();
    const std::string data(3 << 20, 'x');
    writeAt(volume->path("s"), 0, data);
    const auto root = opened(volume->path());
    std::int64_t moved = 0;
    const auto count = [&moved](std::int64_t bytes) {
        moved += bytes;
        return CopyStep::goOn;
    };
    ASSERT_TRUE(copyItem(root, "s", FileType::regular, root, "clone", Cloning::allowed, count));
    EXPECT_EQ(0, moved);
    ASSERT_TRUE(copyItem(root, "s", FileType::regular, root, "copy", Cloning::forbidden, count));
    EXPECT_EQ(std::ssize(data), moved);
    EXPECT_EQ(data, contentOf(volume->path("clone")));
    EXPECT_EQ(data, contentOf(volume->path("copy")));
}

TEST_F(ItemCopyTest, copiesLinksAsLinks) {
    const std::string target(1000, 'x');
    folder.link("s", target);
    setTimes(s);
    const auto copied = copy();
    ASSERT_TRUE(copied);
    expectTimes(d);
    EXPECT_EQ(target, std::filesystem::read_symlink(d));
    EXPECT_EQ(statusOf(d).st_ino, copied->copy.inode);
    EXPECT_EQ(FileType::symlink, copied->copy.type);
}

TEST_F(ItemCopyTest, makesPipesAnewAndOpensNoSpecialFile) {
    ASSERT_EQ(0, mkfifo(s.c_str(), 0600));
    ASSERT_EQ(0, chmod(s.c_str(), 0622));
    setTimes(s);
    ASSERT_TRUE(copy());
    EXPECT_TRUE(S_ISFIFO(statusOf(d).st_mode));
    EXPECT_EQ(0622U, modeOf(d));
    expectTimes(d);
    std::filesystem::remove(s);
    std::filesystem::remove(d);

    const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    s.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    // The system's interface for addresses of all families.
    const auto* anyAddress = reinterpret_cast<const sockaddr*>(&address); // NOLINT
    ASSERT_EQ(0, bind(socketFile, anyAddress, sizeof address));
    EXPECT_EQ(Kind::notCopyable, copy().error().kind);
    close(socketFile);
    const auto null = copyItem(opened("/dev"), "null", FileType::other, opened(folder.url().path()),
                               "d", Cloning::forbidden, goOn);
    EXPECT_EQ(Kind::notCopyable, null.error().kind);
    EXPECT_FALSE(std::filesystem::exists(d));
}

TEST_F(ItemCopyTest, readsToTheEndWhatDoesNotTellItsSize) {
    ASSERT_TRUE(copyItem(opened("/proc"), "filesystems", FileType::regular,
                         opened(folder.url().path()), "d", Cloning::allowed, goOn));
    EXPECT_EQ(contentOf("/proc/filesystems"), contentOf(d));
    EXPECT_FALSE(contentOf(d).empty());
}

TEST_F(ItemCopyTest, asksNoMoreOfTheTargetThanItCanKeep) {
    const auto volume = TestVolume::withoutExclusiveRename();
    if (!volume)
        GTEST_SKIP() << volume.error();
    folder.file("s", "obsah");
    ASSERT_EQ(0, chown(s.c_str(), 1, 2));
    setAttribute(s, "system.posix_acl_access", accessListForUser1());
    setAttribute(s, "user.note", "x");
    ASSERT_TRUE(copyTo(volume->path()));
    EXPECT_EQ("obsah", contentOf(volume->path("d")));
}

TEST_F(ItemCopyTest, leavesNothingWhenStoppedOrWithoutRoom) {
    const std::string data(4 << 20, 'x');
    folder.file("s", data);
    const auto before = diskTree(folder.url().path());
    for (stopAfter = 1; stopAfter < 4; ++stopAfter) {
        EXPECT_EQ(Kind::stopped, copy().error().kind);
        EXPECT_EQ(stopAfter, std::ssize(told));
        EXPECT_TRUE(before == diskTree(folder.url().path()));
    }
    stopAfter = -1;
    const auto small = TestVolume::memory("1m");
    if (!small)
        GTEST_SKIP() << small.error();
    const auto failed = copyTo(small->path());
    EXPECT_EQ(Kind::failed, failed.error().kind);
    EXPECT_EQ(ENOSPC, failed.error().error.code);
    EXPECT_TRUE(std::filesystem::is_empty(small->path()));
}

TEST_F(ItemCopyTest, leavesWhatHasTheNewName) {
    folder.file("s", "mine");
    folder.file("file", "theirs");
    folder.link("dangling", "nowhere");
    folder.link("link", "s");
    ASSERT_EQ(0, mkfifo(folder.path("pipe").c_str(), 0600));
    const auto before = diskTree(folder.url().path());
    const auto root = opened(folder.url().path());
    for (const auto* source : {"s", "link", "pipe"}) {
        for (const auto* target : {"file", "dangling", "s"}) {
            const auto copied =
                copyItem(root, source, FileType::other, root, target, Cloning::allowed, goOn);
            EXPECT_EQ(Kind::exists, copied.error().kind) << source << " to " << target;
        }
    }
    EXPECT_EQ(before, diskTree(folder.url().path()));
}

TEST(ChunkSize, makesAChunkLastAboutFiftyMilliseconds) {
    using std::chrono::milliseconds;
    const auto settled = [](double bytesPerMillisecond) {
        ChunkSize size;
        for (int i = 0; i < 8; ++i) {
            const auto bytes = size.bytes();
            size.took(bytes, milliseconds(static_cast<std::int64_t>(static_cast<double>(bytes) /
                                                                    bytesPerMillisecond)));
        }
        return size.bytes();
    };
    EXPECT_EQ(ChunkSize::most, settled(1e9));
    EXPECT_NEAR(1e6, static_cast<double>(settled(2e4)), 1e5);
    EXPECT_EQ(ChunkSize::least, settled(100));
    ChunkSize size;
    size.took(size.bytes(), milliseconds(0));
    EXPECT_LE(size.bytes(), 1 << 20);
}

} // namespace fennik::test
