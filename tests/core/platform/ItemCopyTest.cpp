#include "core/platform/ItemCopy.h"

#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fennik::test {

namespace {

OpenFolder opened(const TempFolder& folder) {
    return *OpenFolder::open(folder.url().path(), FollowLinks::no);
}

CopyStep goOn(std::int64_t) {
    return CopyStep::goOn;
}

std::string content(const std::string& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

struct stat statusOf(const std::string& path) {
    struct stat info{};
    if (lstat(path.c_str(), &info) != 0)
        ADD_FAILURE() << path << ": " << errno;
    return info;
}

} // namespace

TEST(ItemCopy, keepsContentTimesModeAndAttributes) {
    const TempFolder folder;
    folder.file("s", "obsah");
    const auto s = folder.path("s");
    const timespec times[2] = {{1'000'000'000, 123'456'789}, {-5, 987'654'321}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, s.c_str(), times, 0));
    ASSERT_EQ(0, chmod(s.c_str(), 04751));
    ASSERT_EQ(0, setxattr(s.c_str(), "user.note", "x", 1, 0));
    const auto open = opened(folder);
    const auto copied = copyItem(open, "s", open, "d", Cloning::allowed, goOn);
    ASSERT_TRUE(copied.has_value());
    const auto made = statusOf(folder.path("d"));
    EXPECT_EQ("obsah", content(folder.path("d")));
    EXPECT_EQ(04751U, made.st_mode & 07777U);
    EXPECT_EQ(987'654'321, made.st_mtim.tv_nsec);
    EXPECT_EQ(-5, made.st_mtim.tv_sec);
    EXPECT_EQ(123'456'789, made.st_atim.tv_nsec);
    char value = 0;
    EXPECT_EQ(1, getxattr(folder.path("d").c_str(), "user.note", &value, 1));
    EXPECT_EQ(made.st_ino, copied->copy.inode);
    EXPECT_EQ(statusOf(s).st_ino, copied->source.inode);
}

} // namespace fennik::test
