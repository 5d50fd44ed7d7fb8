#include "core/listing/PathCompleter.h"

#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>

namespace fennik::test {

namespace {

using PathCompleter::IncludeHidden;
using testing::ElementsAre;
using testing::IsEmpty;

class PathCompleterTest : public testing::Test {
protected:
    /// The names that complete `text`, typed in a panel that shows the folder of the test.
    std::vector<std::string> namesFor(const std::string& text,
                                      IncludeHidden hidden = IncludeHidden::no) const {
        std::vector<std::string> names;
        for (const auto& path :
             PathCompleter::suggestions(files, text, temp.url(), temp.url(), hidden)) {
            EXPECT_TRUE(path.starts_with(root)) << path;
            names.push_back(path.substr(root.size()));
        }
        return names;
    }

    FaultyFileSystem files;
    TempFolder temp;
    std::string root = temp.url().path() + "/";
};

} // namespace

TEST(PathCompleterTextTest, typedTextBecomesAPath) {
    const FileUrl home("/home/jana");
    const FileUrl base("/data");
    struct Case {
        std::string text;
        std::string path;
    };
    for (const auto& [text, path] : {
             Case{" \t/a b/\n", "/a b/"},
             Case{"", ""},
             Case{" \n", ""},
             Case{"~", "/home/jana"},
             Case{"~/x", "/home/jana/x"},
             Case{"~x", "/data/~x"},
             Case{"src/", "/data/src/"},
             Case{"file:///a%20b/%C4%8D/", "/a b/č/"},
             Case{"file:///a/%FF", "/a/\xFF"},
             Case{"file://localhost/a", "/a"},
             Case{"file:///Můj disk/", "/Můj disk/"},
             Case{"file://elsewhere/a", "/data/file://elsewhere/a"},
             Case{"file:///a%2", "/data/file:///a%2"},
             Case{"file://", "/data/file://"},
             Case{"\xFF", "/data/\xFF"},
         })
        EXPECT_EQ(PathCompleter::normalise(text, base, home), path) << text;
    EXPECT_EQ(PathCompleter::normalise("src", FileUrl(), home), "/src");
    EXPECT_EQ(PathCompleter::normalise("src", std::nullopt, home), "src");
    EXPECT_EQ(PathCompleter::normalise("~/x", base, FileUrl()), "/x");
}

TEST_F(PathCompleterTest, foldersThatBeginAlikeComplete) {
    for (const auto* const name : {"Documents", "Dóc", "other", ".config", "Dočasné", "doc.app"})
        temp.folder(name);
    temp.file("doc.txt");
    EXPECT_THAT(namesFor("doc"), ElementsAre("Dóc", "Documents", "Dočasné"));
    EXPECT_THAT(namesFor(temp.path("DOČ")), ElementsAre("Dóc", "Documents", "Dočasné"));
    EXPECT_THAT(namesFor("file://" + temp.path("documents")), ElementsAre("Documents"));
    EXPECT_THAT(namesFor("documentsx"), IsEmpty());
    EXPECT_THAT(namesFor(".c"), ElementsAre(".config"));
    EXPECT_THAT(namesFor("~", IncludeHidden::yes),
                ElementsAre(".config", "Dóc", "Documents", "Dočasné", "other"));
    EXPECT_THAT(namesFor("~/"), ElementsAre("Dóc", "Documents", "Dočasné", "other"));
}

TEST_F(PathCompleterTest, linksCompleteWhenTheyLeadToFolders) {
    temp.folder("target");
    temp.file("file");
    temp.link("l-folder", temp.path("target"));
    temp.link("l-file", temp.path("file"));
    temp.link("l-nowhere", temp.path("missing"));
    temp.link("l-loop", temp.path("l-loop"));
    EXPECT_THAT(namesFor("l"), ElementsAre("l-folder"));
    // Only links that fit are examined, and a folder needs no examination.
    files.fail(FaultyFileSystem::Call::status, EIO);
    EXPECT_THAT(namesFor("t"), ElementsAre("target"));
    EXPECT_THAT(namesFor("l"), IsEmpty());
}

TEST_F(PathCompleterTest, theOrderIsCzechAndNatural) {
    for (const auto* const name : {"10", "2", "Ch", "cz", "H", "i", "č", "d", "Á", "a", "\xFF"})
        temp.folder(name);
    EXPECT_THAT(namesFor(root),
                ElementsAre("2", "10", "a", "Á", "cz", "č", "d", "H", "Ch", "i", "\xFF"));
}

TEST_F(PathCompleterTest, whatCannotBeReadCompletesNothing) {
    temp.folder("inner");
    temp.file("file");
    for (const auto& text :
         {std::string(), std::string(" \n"), std::string("in\0", 3), std::string("in\nner"),
          temp.path("missing/"), temp.path("file/"), std::string("file://x/in"),
          std::string("file:///%00/in"), std::string(100'000, 'x') + "/", std::string("..")})
        EXPECT_THAT(namesFor(text), IsEmpty()) << text.substr(0, 100);
    EXPECT_THAT(PathCompleter::suggestions(files, "inner", std::nullopt, FileUrl("/nobody"),
                                           IncludeHidden::no),
                IsEmpty());
    EXPECT_THAT(PathCompleter::suggestions(files, "~", temp.url(), FileUrl("/nobody/home"),
                                           IncludeHidden::no),
                IsEmpty());
    files.fail(FaultyFileSystem::Call::readFolder, EACCES);
    EXPECT_THAT(namesFor("in"), IsEmpty());
}

} // namespace fennik::test
