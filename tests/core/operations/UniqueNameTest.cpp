#include "core/operations/UniqueName.h"

#include "core/base/Utf8.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>

namespace fennik::test {

namespace {

std::string freeBeside(std::string_view name, const std::set<std::string>& taken) {
    return UniqueName::free(
        name, [&](const std::string& candidate) { return taken.contains(candidate) ? 0 : ENOENT; });
}

std::string repeated(std::string_view text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

} // namespace

TEST(UniqueNameTest, countsBehindTheBaseOfTheName) {
    struct Case {
        std::string_view name;
        std::set<std::string> taken;
        std::string_view free;
    };
    for (const auto& [name, taken, free] : {
             Case{"a.txt", {}, "a.txt"},
             Case{"a.txt", {"a.txt"}, "a 2.txt"},
             Case{"a.txt", {"a.txt", "a 2.txt"}, "a 3.txt"},
             Case{"a 7.txt", {"a 7.txt"}, "a 2.txt"},
             Case{"Zpráva 2.txt", {"Zpráva 2.txt"}, "Zpráva 3.txt"},
             Case{"a7", {"a7"}, "a7 2"},
             Case{".profile", {".profile"}, ".profile 2"},
             Case{".config.json", {".config.json"}, ".config 2.json"},
             Case{"Makefile", {"Makefile"}, "Makefile 2"},
             Case{"a.tar.gz", {"a.tar.gz"}, "a.tar 2.gz"},
             Case{"dot.", {"dot."}, "dot. 2"},
             Case{" 2", {" 2"}, " 3"},
             Case{"2", {"2"}, "2 2"},
         })
        EXPECT_EQ(freeBeside(name, taken), free) << name;
}

TEST(UniqueNameTest, longNamesLoseCharactersOfTheirBase) {
    const auto czech = repeated("ž", 130) + ".jpeg";
    const auto cut = freeBeside(czech, {});
    EXPECT_EQ(cut, repeated("ž", 125) + ".jpeg"); // 255 bytes
    EXPECT_EQ(freeBeside(czech, {cut}), repeated("ž", 124) + " 2.jpeg");

    const auto bytes = repeated("\xFF", 255);
    EXPECT_EQ(freeBeside(bytes, {bytes}), repeated("\xFF", 253) + " 2");
    const auto allExtension = "a." + repeated("x", 253);
    EXPECT_EQ(freeBeside(allExtension, {allExtension}), "a." + repeated("x", 251) + " 2");
}

TEST(UniqueNameTest, asksForLessWhereTheVolumeTakesLess) {
    const auto free = [](std::size_t longest, std::string_view name) {
        return UniqueName::free(name, [&](const std::string& candidate) {
            if (candidate.size() > longest)
                return ENAMETOOLONG;
            return candidate.contains(' ') ? ENOENT : 0;
        });
    };
    EXPECT_EQ(free(143, repeated("ž", 120) + ".txt"), repeated("ž", 68) + " 2.txt");
    EXPECT_TRUE(Utf8::isValid(free(0, repeated("ž", 120) + ".txt"))); // ends in any case
}

TEST(UniqueNameTest, whatCannotBeExaminedIsLeftToTheOneWhoCreates) {
    for (const int error : {EACCES, EIO, ELOOP}) {
        int calls = 0;
        const auto name =
            UniqueName::free("a.txt", [&](const std::string&) { return ++calls == 1 ? 0 : error; });
        EXPECT_EQ(name, "a 2.txt");
        EXPECT_EQ(calls, 2);
    }
}

TEST(UniqueNameTest, asksTheDiskAndTakesADanglingLinkForTaken) {
    const TempFolder temp;
    temp.link("a.txt", "nowhere");
    temp.folder("a 2.txt");
    EXPECT_EQ(UniqueName::url(temp.url(), "a.txt"), temp.url().appending("a 3.txt"));
    EXPECT_EQ(UniqueName::url(temp.url().appending("missing"), "a.txt").lastComponent(), "a.txt");
}

} // namespace fennik::test
