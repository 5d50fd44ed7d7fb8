#include "core/archives/ArchiveReader.h"
#include "tests/core/archives/ExtractionFixture.h"
#include "tests/support/TestArchives.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

/// What an old Unix program writes: the data of a file with two names stands with the second.
std::string cpioWithTwoNames() {
    const auto entry = [](const std::string& name, unsigned links, const std::string& content) {
        std::array<char, 111> header{};
        const auto size = static_cast<unsigned>(content.size());
        const auto nameSize = static_cast<unsigned>(name.size() + 1);
        std::snprintf(header.data(), header.size(),
                      "070701%08x%08x%08x%08x%08x%08x%08x%08x%08x%08x%08x%08x%08x", 7U, 0100644U,
                      0U, 0U, links, 1'600'000'000U, size, 0U, 0U, 0U, 0U, nameSize, 0U);
        std::string result = header.data() + name + '\0';
        result.resize((result.size() + 3) / 4 * 4);
        result += content;
        result.resize((result.size() + 3) / 4 * 4);
        return result;
    };
    return entry("one", 2, "") + entry("two", 2, "the data") + entry("TRAILER!!!", 1, "");
}

} // namespace

/// Archives as files, read by the library.
class ExtractionOfArchivesTest : public ExtractionFixture {
protected:
    PairOutcome extract(const std::string& name, const std::string& bytes) {
        write(name, bytes);
        extraction.archive = FileUrl(temp.path(name));
        return ExtractionFixture::extract(DirectArchives());
    }
};

TEST_F(ExtractionOfArchivesTest, keepsHostileTarsInsideTheTarget) {
    const auto outside = temp.path("outside");
    EXPECT_EQ(
        extract("evil.tar", tarOf({{.name = "good", .content = "whole"},
                                   {.name = "../outside/a", .content = "x"},
                                   {.name = outside + "/b", .content = "x"},
                                   {.name = "link", .type = '2', .linkName = outside},
                                   {.name = "link/c", .content = "x"},
                                   {.name = "up", .type = '2', .linkName = ".."},
                                   {.name = "up/outside/d", .content = "x"},
                                   {.name = "h", .type = '1', .linkName = "../outside/sentinel"},
                                   {.name = "i", .type = '1', .linkName = outside + "/sentinel"},
                                   {.name = "device", .type = '3'},
                                   {.name = "pipe", .type = '6'}})),
        PairOutcome::failed);
    EXPECT_EQ(context.conflicts.size(), 1U); // the links come last, and their names are taken
    const auto now = target();
    EXPECT_EQ(now.at("good"), "whole");
    EXPECT_EQ(now.at("link/c"), "x");
    EXPECT_EQ(now.at("up/outside/d"), "x");
    for (const auto* name : {"h", "i", "device", "pipe"})
        EXPECT_FALSE(now.contains(name)) << name;
}

TEST_F(ExtractionOfArchivesTest, takesOnlyWholeFilesOfATruncatedArchive) {
    std::vector<LibraryEntry> entries;
    Tree whole;
    for (int i = 0; i < 8; ++i) {
        const auto name = "file" + std::to_string(i);
        std::string content;
        for (int j = 0; j < 500; ++j)
            content += name + std::to_string(j * j * (i + 1));
        entries.push_back({.path = name, .content = content});
        whole[name] = content;
    }
    for (const auto& [name, made] :
         {std::pair{std::string("x.tar"), archiveOf({}, entries)},
          std::pair{std::string("x.tar.gz"), archiveOf({.filters = {"gzip"}}, entries)},
          std::pair{std::string("x.zip"), archiveOf({.format = "zip"}, entries)}}) {
        for (std::size_t length = 512; length + 1024 < made.size(); length += 1531) {
            fs::remove_all(temp.path("target"));
            context.errors.clear();
            const auto outcome = extract(name, made.substr(0, length));
            // A tar that ends after a whole entry says no more than that it ends.
            EXPECT_TRUE(outcome == PairOutcome::failed || name == "x.tar") << name << length;
            EXPECT_EQ(outcome == PairOutcome::failed, !context.errors.empty());
            const auto found = fs::exists(temp.path("target")) ? target() : Tree{};
            EXPECT_TRUE(std::ranges::includes(whole, found)) << name << length;
        }
    }
}

TEST_F(ExtractionOfArchivesTest, opensAnEncryptedZipWithThePasswordThatIsRight) {
    for (const auto* method : {"zip:encryption=aes256", "zip:encryption=zipcrypt"}) {
        fs::remove_all(temp.path("target"));
        asked.clear();
        passwords = {"špatné", "žluťoučký kůň"};
        EXPECT_EQ(
            extract(
                "secret.zip",
                archiveOf({.format = "zip", .options = method, .password = "žluťoučký kůň"},
                          {{.path = "a", .content = "first"}, {.path = "b", .content = "second"}})),
            PairOutcome::done)
            << method;
        EXPECT_THAT(asked, ElementsAre(false, true)) << method;
        EXPECT_EQ(target(), (Tree{{"a", "first"}, {"b", "second"}})) << method;
    }
}

TEST_F(ExtractionOfArchivesTest, noticesWrongSizesInAZip) {
    EXPECT_EQ(extract("lies.zip", zipOf({{.name = "more", .content = "0123456789", .size = 4},
                                         {.name = "less", .content = "0123456789", .size = 400},
                                         {.name = "sum", .content = "0123456789", .checksum = 1},
                                         {.name = "good", .content = "whole"}})),
              PairOutcome::failed);
    EXPECT_EQ(target(), (Tree{{"good", "whole"}}));
    EXPECT_EQ(context.errors.size(), 3U);
}

TEST_F(ExtractionOfArchivesTest, namesASingleCompressedFileLikeItsArchive) {
    extraction.ownFolder = true;
    EXPECT_EQ(extract("letter.txt.gz", compressed("gzip", "dear all")), PairOutcome::done);
    EXPECT_EQ(target(), (Tree{{"letter.txt", "dear all"}}));
}

TEST_F(ExtractionOfArchivesTest, findsTheDataOfAFileWithItsLastName) {
    EXPECT_EQ(extract("x.cpio", cpioWithTwoNames()), PairOutcome::done);
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(target(), (Tree{{"one", "the data"}, {"two", "the data"}}));

    fs::remove_all(temp.path("target"));
    extraction.selection = {{"two"}};
    EXPECT_EQ(extract("x.cpio", cpioWithTwoNames()), PairOutcome::done);
    EXPECT_EQ(target(), (Tree{{"two", "the data"}}));
}

TEST_F(ExtractionOfArchivesTest, writesCzechNamesThatAreNotUtf8) {
    std::vector<ZipEntry> entries;
    for (const auto* name :
         {"P\xf8\xedli\x9a \x9elu\x9dou\xe8k\xfd.txt", "Mal\xe1 \x9akola/k\xf9\xf2.txt"})
        entries.push_back({.name = name, .content = "x", .isUtf8 = false, .madeBy = 0});
    EXPECT_EQ(extract("x.zip", zipOf(entries)), PairOutcome::done);
    EXPECT_EQ(target(), (Tree{{"Příliš žluťoučký.txt", "x"},
                              {"Malá škola", "folder/"},
                              {"Malá škola/kůň.txt", "x"}}));
}

TEST_F(ExtractionOfArchivesTest, saysThatAnArchiveIsNone) {
    EXPECT_EQ(extract("x.zip", "no archive at all"), PairOutcome::failed);
    EXPECT_THAT(context.errors, ElementsAre("Archiv nejde otevřít: neznámý formát"));
}

} // namespace fennik::test
