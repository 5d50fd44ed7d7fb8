#include "core/archives/ArchiveIndex.h"

#include "core/archives/ArchiveReader.h"
#include "core/base/Utf8.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestArchives.h"

#include <gmock/gmock.h>

#include <limits>
#include <set>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = ArchiveEntry::Kind;
using IndexResult = EntryStream::Result<std::shared_ptr<const ArchiveIndex>>;

constexpr auto largest = std::numeric_limits<std::int64_t>::max();

/// Gives entries as they are asked for.
class MadeStream final : public EntryStream {
public:
    using Make = std::function<std::optional<StreamEntry>(std::size_t number)>;
    explicit MadeStream(Make make) : make_(std::move(make)) {}

    Result<std::optional<StreamEntry>> next() override { return make_(number_++); }
    Result<Block> read() override { return Block{}; }
    const ArchiveFacts& facts() const override { return facts_; }

private:
    Make make_;
    std::size_t number_ = 0;
    ArchiveFacts facts_{.fileModified = {5, 0}};
};

StreamEntry file(std::string path, std::int64_t size) {
    return {.entry = {.path = std::move(path), .size = size, .modified = testDate, .mode = 0644},
            .declaresSize = true};
}

StreamEntry entry(std::string path, Kind kind, std::optional<std::string> target = {}) {
    return {.entry = {.path = std::move(path),
                      .kind = kind,
                      .modified = testDate,
                      .mode = 0700,
                      .linkTarget = std::move(target)}};
}

std::shared_ptr<const ArchiveIndex> indexOf(const std::vector<StreamEntry>& entries) {
    MadeStream stream([&entries](std::size_t number) {
        return number < entries.size() ? std::optional(entries[number]) : std::nullopt;
    });
    return *ArchiveIndex::read(stream, FileUrl("/a.zip"));
}

class ArchiveIndexTest : public testing::Test {
protected:
    std::shared_ptr<const ArchiveIndex> read(std::string_view name, const std::string& bytes) {
        folder.file(name, bytes);
        request = {.url = folder.url().appending(name)};
        const auto stream = DirectArchives().open(request, [] { return false; });
        const auto index = ArchiveIndex::read(**stream, request.url);
        EXPECT_TRUE(index) << index.error().message();
        return *index;
    }

    TempFolder folder;
    ArchiveRequest request;
};

/// Every path of the index, found by walking through its folders.
std::vector<std::string> walk(const ArchiveIndex& index, const std::string& folder = {}) {
    std::vector<std::string> paths;
    for (const auto name : index.children(folder)) {
        paths.push_back(folder.empty() ? std::string(name) : folder + '/' + std::string(name));
        EXPECT_TRUE(index.find(paths.back())) << paths.back();
        const auto below = walk(index, paths.back());
        paths.insert(paths.end(), below.begin(), below.end());
    }
    return paths;
}

} // namespace

TEST_F(ArchiveIndexTest, addsTheFoldersThatAreNotRecorded) {
    const auto index = read("a.zip", zipOf({{.name = "a/b/c.txt", .content = "1234567"}}));
    EXPECT_THAT(index->children(""), ElementsAre("a"));
    EXPECT_THAT(index->children("a"), ElementsAre("b"));
    EXPECT_THAT(index->children("a/b"), ElementsAre("c.txt"));
    EXPECT_THAT(index->children("a/b/c.txt"), IsEmpty());
    for (const auto* path : {"a", "a/b"}) {
        const auto found = index->find(path);
        ASSERT_TRUE(found);
        EXPECT_TRUE(found->implicit);
        EXPECT_EQ(found->kind, Kind::directory);
        EXPECT_EQ(found->mode, 0755);
        EXPECT_EQ(found->modified, index->facts().fileModified);
        EXPECT_EQ(index->folderSize(path), 7);
    }
    EXPECT_EQ(index->folderSize("a/b/c.txt"), 0);
    EXPECT_EQ(index->find("a/b/c.txt")->size, 7);
    EXPECT_EQ(index->fileCount(), 1);
    EXPECT_EQ(index->totalSize(), 7);
    EXPECT_TRUE(index->isZip());
    EXPECT_EQ(index->formatLabel(), "ZIP");
    for (const auto* path : {"", "/", "a/", "/a", "a//b", "b", "a/b/c.txt/d"})
        EXPECT_EQ(index->find(path), std::nullopt) << path;
}

TEST_F(ArchiveIndexTest, keepsOneEntryForEachPath) {
    const auto index = indexOf({
        file("f", 1),
        file("f", 20), // the later one is it
        file("d/x", 300),
        entry("d", Kind::directory), // recorded after what lies in it
        file("both", 4000),
        file("both/below", 5), // makes a folder of it
        file("last", 6),
        entry("last/below", Kind::symlink, "target"),
        file("last", 7), // cannot take the place of a folder
        entry("empty", Kind::directory),
        file("empty", 80),
    });
    EXPECT_THAT(walk(*index), UnorderedElementsAre("f", "d", "d/x", "both", "both/below", "last",
                                                   "last/below", "empty"));
    EXPECT_EQ(index->find("f")->size, 20);
    EXPECT_FALSE(index->find("d")->implicit);
    EXPECT_EQ(index->find("d")->mode, 0700);
    EXPECT_EQ(index->find("d")->modified, testDate);
    for (const auto* path : {"both", "last"}) {
        EXPECT_EQ(index->find(path)->kind, Kind::directory);
        EXPECT_TRUE(index->find(path)->implicit);
    }
    EXPECT_EQ(index->find("last/below")->linkTarget, "target");
    EXPECT_EQ(index->find("empty")->kind, Kind::directory);
    EXPECT_EQ(index->fileCount(), 3);
    EXPECT_EQ(index->totalSize(), 20 + 300 + 5);
}

TEST_F(ArchiveIndexTest, neverAddsSizesUpBeyondTheLargestNumber) {
    const auto index = indexOf({file("a/x", largest), file("a/y", largest), file("b/z", 5)});
    EXPECT_EQ(index->folderSize("a"), largest);
    EXPECT_EQ(index->folderSize("b"), 5);
    EXPECT_EQ(index->totalSize(), largest);
}

TEST_F(ArchiveIndexTest, reportsWhatCannotBeTakenAndWhatIsEncrypted) {
    const auto index = read("a.tar", tarOf({{.name = "../evil"}, {.name = "good"}}));
    EXPECT_THAT(walk(*index), ElementsAre("good"));
    EXPECT_EQ(index->refusedCount(), 1);
    EXPECT_FALSE(index->hasEncryptedEntries());

    const auto encrypted = read(
        "b.zip",
        archiveOf({.format = "zip", .options = "zip:encryption=traditional", .password = "heslo"},
                  {{.path = "a"}, {.path = "b", .content = "x"}}));
    EXPECT_TRUE(encrypted->hasEncryptedEntries());
    EXPECT_TRUE(encrypted->find("b")->encrypted);
}

TEST_F(ArchiveIndexTest, showsCzechNamesOfUnnamedCharacterSets) {
    const auto index =
        read("a.zip", zipOf({{.name = "P\xFD\xA1lohy/", .isUtf8 = false, .madeBy = 0},
                             {.name = "P\xFD\xA1lohy/\xA6lu\x9Cou\x9Fk\xEC k\x85\xE5.txt",
                              .content = "x",
                              .isUtf8 = false,
                              .madeBy = 0},
                             {.name = "abc", .isUtf8 = false}}));
    EXPECT_EQ(index->charset(), "IBM852");
    EXPECT_THAT(walk(*index), UnorderedElementsAre("Přílohy", "Přílohy/Žluťoučký kůň.txt", "abc"));
    EXPECT_FALSE(index->find("Přílohy")->implicit);
    EXPECT_EQ(index->folderSize("Přílohy"), 1);

    // What is taken out later is called the same.
    request.charset = index->charset();
    const auto stream = DirectArchives().open(request, [] { return false; });
    for (auto met = (*stream)->next(); *met; met = (*stream)->next())
        EXPECT_TRUE(index->find((**met).entry.path)) << (**met).entry.path;
}

TEST_F(ArchiveIndexTest, losesNoNameOfAnyBytes) {
    std::vector<TarEntry> entries;
    for (int first = 0x80; first <= 0xFF; ++first)
        for (const char second : {'\x80', '\x9D', '\xFF', 'x'})
            entries.push_back({.name = {'n', static_cast<char>(first), second}});
    const auto index = read("a.tar", tarOf(entries));
    EXPECT_EQ(index->children("").size(), entries.size());
    for (const auto name : index->children(""))
        EXPECT_TRUE(Utf8::isValid(name));
}

TEST_F(ArchiveIndexTest, followsTheNamesOfLinkedEntriesIntoTheirCharacterSet) {
    const auto index = read("a.tar", tarOf({{.name = "k\xF9\xF2", .content = "x"},
                                            {.name = "h", .type = '1', .linkName = "k\xF9\xF2"},
                                            {.name = "s", .type = '2', .linkName = "k\xF9\xF2"}}));
    EXPECT_EQ(index->find("h")->linkTarget, "kůň");
    EXPECT_EQ(index->find("s")->linkTarget, "kůň");
}

TEST_F(ArchiveIndexTest, givesUpBeforeMemoryRunsOut) {
    const std::string longest(4080, 'x');
    MadeStream endless([&](std::size_t number) {
        return std::optional(file(std::to_string(number) + longest, 0));
    });
    const auto index = ArchiveIndex::read(endless, FileUrl("/a.tar"));
    ASSERT_FALSE(index);
    EXPECT_THAT(index.error().message(), HasSubstr("víc položek, než se vejde do paměti"));
}

} // namespace fennik::test
