#include "core/base/FileUrl.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(FileUrlTest, keepsTheFormApartFromThePath) {
    const FileUrl folder("/home/jana//");
    EXPECT_EQ(folder.path(), "/home/jana");
    EXPECT_TRUE(folder.hasDirectoryForm());
    EXPECT_NE(folder, FileUrl("/home/jana"));
    EXPECT_EQ(FileUrl("/"), FileUrl());
    EXPECT_TRUE(FileUrl("/").hasDirectoryForm());
}

TEST(FileUrlTest, walksUpAndDown) {
    const FileUrl root;
    EXPECT_EQ(root.appending("a").path(), "/a");
    EXPECT_EQ(root.parent(), root);
    EXPECT_EQ(FileUrl("/a").parent(), root);
    EXPECT_EQ(FileUrl("/a/b").parent().path(), "/a");
    EXPECT_TRUE(FileUrl("/a/b").parent().hasDirectoryForm());
    EXPECT_EQ(FileUrl("/a/b c").lastComponent(), "b c");
    EXPECT_EQ(root.lastComponent(), "/");
}

TEST(FileUrlTest, standardizesAsText) {
    for (const auto& [given, expected] : {
             std::pair{"/a/./b//c", "/a/b/c"},
             std::pair{"/a/b/../c", "/a/c"},
             std::pair{"/../..", "/"},
             std::pair{"/a/..", "/"},
             std::pair{"/a/...", "/a/..."},
             std::pair{"/\xFF/..x", "/\xFF/..x"},
         })
        EXPECT_EQ(FileUrl(given).standardized().path(), expected);
    EXPECT_TRUE(FileUrl("/a/b/").standardized().hasDirectoryForm());
}

} // namespace fennik::test
