#include "core/base/FileLists.h"

#include <gtest/gtest.h>

#include <map>

namespace fennik::test {

namespace {

using FileLists::Files;
using FileLists::Intent;
using Contents = std::map<std::string_view, std::string>;

Files read(const Contents& contents) {
    return FileLists::read([&](std::string_view type) {
        const auto found = contents.find(type);
        return found == contents.end() ? std::string() : found->second;
    });
}

} // namespace

TEST(FileListsTest, whatIsWrittenComesBackFromEachFormat) {
    const Files files{{"/home/jana/účet 100%.pdf", "/a\nb\r/\xE8\xFF", "/"}, Intent::move};
    Contents contents;
    for (const auto& [type, content] : FileLists::write(files))
        contents[type] = content;
    ASSERT_EQ(contents.size(), 4U);
    EXPECT_EQ(read(contents), files);
    EXPECT_EQ(contents["text/uri-list"], "file:///home/jana/%C3%BA%C4%8Det%20100%25.pdf\r\n"
                                         "file:///a%0Ab%0D/%E8%FF\r\nfile:///\r\n");
    const auto copied = contents.extract("x-special/gnome-copied-files");
    EXPECT_TRUE(copied.mapped().starts_with("cut\nfile:///home"));
    EXPECT_EQ(read(contents), files);
    contents.erase("application/x-kde-cutselection");
    EXPECT_EQ(read(contents), (Files{files.paths, Intent::copy}));
    contents.erase("text/uri-list");
    EXPECT_EQ(read(contents), Files()); // the plain paths have a line break in them
}

TEST(FileListsTest, readsWhatOtherProgramsWrite) {
    EXPECT_EQ(read({{"text/uri-list", "# a remark\r\nfile:///a/b/\nhttp://x.cz/c\r\nfile:/d\0"}}),
              (Files{{"/a/b", "/d"}}));
    EXPECT_EQ(read({{"x-special/gnome-copied-files", "copy\nfile:///a\n"},
                    {"text/uri-list", "file:///b\r\n"}}),
              (Files{{"/a"}}));
    EXPECT_EQ(read({{"application/x-kde-cutselection", std::string("1\0", 2)},
                    {"text/uri-list", "file:///a"}}),
              (Files{{"/a"}, Intent::move}));
    EXPECT_EQ(read({{"text/plain", "/a b\r\nfile:///c%20d\n"}}), (Files{{"/a b", "/c d"}}));
}

TEST(FileListsTest, textThatOnlyMentionsAPathIsNoList) {
    for (const auto* text : {"", "a/b", "/a\nnebo b", "viz /etc/passwd", "https://x.cz/a"})
        EXPECT_EQ(read({{"text/plain", text}}), Files()) << text;
    EXPECT_EQ(read({{"text/uri-list", "sftp://x/a\r\n"}, {"text/plain", "/a"}}), Files());
}

} // namespace fennik::test
