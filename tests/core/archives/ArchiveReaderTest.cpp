#include "core/archives/ArchiveReader.h"

#include "core/archives/FormatLabel.h"
#include "core/base/PosixError.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestArchives.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Case = ArchiveError::Case;
using Kind = ArchiveEntry::Kind;

struct ReadEntry {
    StreamEntry met = {};
    std::string data = {};
    std::optional<ArchiveError> error = {}; ///< of its data
};

struct ReadArchive {
    std::vector<ReadEntry> entries = {};
    ArchiveFacts facts = {};
    std::optional<ArchiveError> error = {}; ///< after which there were no more entries

    std::vector<std::string> paths() const {
        std::vector<std::string> result;
        for (const auto& each : entries)
            result.push_back((each.met.isRefused ? "!" : "") + each.met.entry.path);
        return result;
    }
};

ReadEntry readData(EntryStream& stream, StreamEntry met) {
    ReadEntry entry{.met = std::move(met)};
    for (;;) {
        const auto block = stream.read();
        if (!block) {
            entry.error = block.error();
            return entry;
        }
        entry.data.resize(static_cast<std::size_t>(block->offset));
        if (block->bytes.empty())
            return entry;
        entry.data.append(reinterpret_cast<const char*>(block->bytes.data()), block->bytes.size());
    }
}

bool never() {
    return false;
}

class ArchiveReaderTest : public testing::Test {
protected:
    ArchiveRequest request(std::string_view name, const std::string& bytes) const {
        folder.file(name, bytes);
        return {.url = folder.url().appending(name)};
    }

    static ReadArchive read(const ArchiveRequest& request, const IsCancelled& isCancelled = never) {
        ReadArchive result;
        const auto stream = DirectArchives().open(request, isCancelled);
        if (!stream) {
            result.error = stream.error();
            return result;
        }
        for (;;) {
            auto met = (*stream)->next();
            result.facts = (*stream)->facts();
            if (!met)
                result.error = met.error();
            if (!met || !*met)
                break;
            result.entries.push_back(readData(**stream, **std::move(met)));
        }
        // What has ended stays so.
        const auto again = (*stream)->next();
        EXPECT_EQ(again.has_value(), !result.error);
        if (again) {
            EXPECT_FALSE(again->has_value());
        } else {
            EXPECT_EQ(again.error(), *result.error);
        }
        return result;
    }

    ReadArchive read(std::string_view name, const std::string& bytes) const {
        return read(request(name, bytes));
    }

    TempFolder folder;
};

const std::vector<LibraryEntry> usualEntries = {
    {.path = "Žluťoučký kůň", .kind = LibraryEntry::Kind::directory, .mode = 0750},
    {.path = "Žluťoučký kůň/ódy.txt", .content = std::string(100'000, 'x') + "konec"},
    {.path = "Žluťoučký kůň/prázdný"},
    {.path = "skript", .content = "#!/bin/sh\n", .mode = 0755},
};

struct Format {
    LibraryArchive how = {};
    std::string extension = {};
    std::string label = {};
};
const std::vector<Format> formats = {
    {{.format = "zip"}, "zip", "ZIP"},
    {{.format = "7zip"}, "7z", "7z"},
    {{.format = "paxr"}, "tar", "tar"},
    {{.format = "paxr", .filters = {"gzip"}}, "tar.gz", "tar.gz"},
    {{.format = "paxr", .filters = {"xz"}}, "tar.xz", "tar.xz"},
    {{.format = "paxr", .filters = {"bzip2"}}, "tbz2", "tbz2"},
    {{.format = "newc"}, "cpio", "cpio"},
    {{.format = "paxr", .filters = {"zstd"}}, "zst", "POSIX pax interchange format"},
};

/// What was delivered without an error is what was packed.
void expectTruth(const ReadArchive& found, const std::string& what) {
    for (const auto& [met, data, error] : found.entries) {
        const auto packed = std::ranges::find(usualEntries, met.entry.path, &LibraryEntry::path);
        ASSERT_NE(packed, usualEntries.end()) << what << ": " << met.entry.path;
        if (!error) {
            EXPECT_EQ(data == packed->content, true) << what << ": " << met.entry.path;
        }
    }
}

} // namespace

TEST_F(ArchiveReaderTest, readsEveryFormatWithCzechNamesWhateverTheEnvironmentSays) {
    for (const auto& [how, extension, label] : formats) {
        const auto request = this->request("a." + extension, archiveOf(how, usualEntries));
        const auto found = read(request);
        ASSERT_EQ(found.error, std::nullopt) << extension;
        EXPECT_THAT(found.paths(),
                    testing::UnorderedElementsAre("Žluťoučký kůň", "Žluťoučký kůň/ódy.txt",
                                                  "Žluťoučký kůň/prázdný", "skript"));
        expectTruth(found, extension);
        EXPECT_EQ(formatLabel(found.facts, request.url), label);
        for (const auto& [met, data, error] : found.entries) {
            EXPECT_EQ(error, std::nullopt) << extension;
            EXPECT_EQ(met.entry.modified, testDate) << extension;
            EXPECT_FALSE(met.hasForeignName || met.isRefused || met.isSpecial) << extension;
            if (met.entry.kind == Kind::file) {
                EXPECT_TRUE(met.declaresSize) << extension;
                EXPECT_EQ(met.entry.size, static_cast<std::int64_t>(data.size())) << extension;
            }
            if (met.entry.path == "skript") {
                EXPECT_EQ(met.entry.mode, 0755) << extension;
            }
            if (met.entry.path == "Žluťoučký kůň") {
                EXPECT_EQ(met.entry.kind, Kind::directory) << extension;
            }
        }
    }
}

TEST_F(ArchiveReaderTest, takesPathsIntoTheArchiveOrRefusesThem) {
    const auto found = read("a.tar", tarOf({
                                         {.name = "./", .type = '5'},
                                         {.name = "./a"},
                                         {.name = "/etc/passwd"},
                                         {.name = "x//y/", .type = '5'},
                                         {.name = "../evil"},
                                         {.name = "a/../../evil"},
                                         {.name = "back\\slash"},
                                         {.name = "__MACOSX/._a"},
                                         {.name = "__MACOSX/", .type = '5'},
                                         {.name = "__MACOSXX"},
                                         {.name = "l", .pax = {{"path", std::string(60'000, 'd')}}},
                                     }));
    EXPECT_THAT(found.paths(),
                ElementsAre("a", "etc/passwd", "x/y", "!../evil", "!a/../../evil", "back\\slash",
                            "__MACOSXX", "!" + std::string(200, 'd') + "…"));
    EXPECT_EQ(found.error, std::nullopt);
    const auto zip = read("a.zip", zipOf({{.name = "..\\..\\evil", .madeBy = 0}}));
    for (const auto& path : zip.paths())
        EXPECT_TRUE(path.starts_with('!') || path == "..\\..\\evil") << path;
}

TEST_F(ArchiveReaderTest, namesWhatHasNoName) {
    const auto found = read("a.7z", sevenZipWithoutNames());
    EXPECT_EQ(found.error, std::nullopt);
    EXPECT_THAT(found.paths(), ElementsAre("beze jména 1", "beze jména 2"));
}

TEST_F(ArchiveReaderTest, tellsKindsModesAndLinks) {
    const auto found =
        read("a.tar", tarOf({
                          {.name = "file", .content = "x", .mode = 0},
                          {.name = "folder/", .type = '5', .mode = 0},
                          {.name = "hard", .type = '1', .linkName = "./file"},
                          {.name = "hard out", .type = '1', .linkName = "../../etc/passwd"},
                          {.name = "link", .type = '2', .linkName = "../../etc/passwd"},
                          {.name = "fifo", .type = '6'},
                          {.name = "device", .type = '3'},
                          {.name = "set-id", .mode = 06755, .modified = {1, 0}},
                      }));
    ASSERT_EQ(found.error, std::nullopt);
    ASSERT_EQ(found.entries.size(), 8);
    const auto entry = [&found](std::size_t i) { return found.entries[i].met.entry; };
    EXPECT_EQ(entry(0).mode, 0644);
    EXPECT_EQ(entry(1).kind, Kind::directory);
    EXPECT_EQ(entry(1).mode, 0755);
    EXPECT_EQ(entry(2).kind, Kind::hardlink);
    EXPECT_EQ(entry(2).linkTarget, "file");
    EXPECT_TRUE(found.entries[3].met.isRefused);
    EXPECT_EQ(entry(4).kind, Kind::symlink);
    EXPECT_EQ(entry(4).linkTarget, "../../etc/passwd");
    for (const std::size_t special : {5U, 6U}) {
        EXPECT_EQ(entry(special).kind, Kind::file);
        EXPECT_TRUE(found.entries[special].met.isSpecial);
    }
    EXPECT_EQ(entry(7).mode, 06755);
    EXPECT_EQ(entry(7).modified, (Date{1, 0}));
}

TEST_F(ArchiveReaderTest, callsASingleCompressedFileLikeItsArchive) {
    const auto gzip = compressed("gzip", "obsah");
    const auto found = read("data.txt.gz", gzip);
    EXPECT_THAT(found.paths(), ElementsAre("data.txt"));
    EXPECT_TRUE(found.facts.isRaw());
    EXPECT_EQ(found.entries[0].data, "obsah");
    EXPECT_FALSE(found.entries[0].met.declaresSize);

    auto hostile = gzip; // with the flag of a name and that name
    hostile[3] = static_cast<char>(hostile[3] | 8);
    hostile.insert(10, std::string("../../../evil\0", 14));
    const auto evil = read("b.gz", hostile);
    EXPECT_THAT(evil.paths(), ElementsAre("b"));
    EXPECT_EQ(evil.entries[0].data, "obsah");
    EXPECT_THAT(read("...gz", gzip).paths(), ElementsAre("...gz"));

    // Which the library takes for an archive without entries.
    const auto empty = read("e.xz", compressed("xz", ""));
    EXPECT_THAT(empty.paths(), ElementsAre("e"));
    EXPECT_TRUE(empty.facts.isRaw());
    EXPECT_EQ(empty.entries[0].data, "");

    EXPECT_EQ(read("c.tar.gz", gzip).error, (ArchiveError{Case::cannotOpen, "neznámý formát"}));
}

TEST_F(ArchiveReaderTest, decodesNamesOnlyWhereTheCharacterSetIsKnown) {
    auto request = this->request("a.zip", zipOf({{.name = "k\xF9\xF2/ž", .isUtf8 = false},
                                                 {.name = "kůň", .isUtf8 = false}}));
    auto found = read(request);
    EXPECT_THAT(found.paths(), ElementsAre("k\xF9\xF2/ž", "kůň"));
    EXPECT_TRUE(found.entries[0].met.hasForeignName);
    EXPECT_FALSE(found.entries[1].met.hasForeignName);

    request.charset = "windows-1250";
    found = read(request);
    EXPECT_THAT(found.paths(), ElementsAre("kůň/ž", "kůň"));
    EXPECT_FALSE(found.entries[0].met.hasForeignName);
}

TEST_F(ArchiveReaderTest, neverPassesOffDamagedDataAsWhole) {
    const auto error = [](const ReadArchive& found) {
        return found.entries.empty() ? std::nullopt : found.entries[0].error;
    };
    const auto sum = read("a.zip", zipOf({{.name = "a", .content = "data", .checksum = 1}}));
    ASSERT_TRUE(error(sum));
    EXPECT_EQ(error(sum)->kind, Case::damaged);

    // Where the library says nothing, the size that is declared does.
    for (const std::uint32_t declared : {2U, 9U}) {
        const auto lying =
            read("b.zip", zipOf({{.name = "a", .content = "data", .size = declared}}));
        ASSERT_EQ(lying.entries.size(), 1);
        const auto& [met, data, dataError] = lying.entries[0];
        EXPECT_TRUE(met.declaresSize);
        EXPECT_TRUE(dataError || met.entry.size != static_cast<std::int64_t>(data.size()));
    }

    const auto huge = read("a.tar", tarOf({{.name = "a", .content = "x", .size = 1'000'000'000}}));
    ASSERT_EQ(huge.entries.size(), 1);
    EXPECT_TRUE(huge.entries[0].error);
}

TEST_F(ArchiveReaderTest, noticesWhereverAnArchiveIsCutOff) {
    for (const auto& [how, extension, label] : formats) {
        const auto whole = archiveOf(how, usualEntries);
        const std::size_t step = whole.size() > 20'000 ? 4 * 512 : 64;
        for (std::size_t length = 1; length < whole.size(); length += step) {
            const auto found = read("a." + extension, whole.substr(0, length));
            expectTruth(found, extension + " of " + std::to_string(length));
            if (found.error) {
                EXPECT_FALSE(found.error->message().empty());
            }
        }
    }
}

TEST_F(ArchiveReaderTest, startsNoProgramForAFilterThatTheLibraryHasNot) {
    const std::map<std::string, std::string> programs{{"lrzip", std::string("LRZI\0\6", 6)},
                                                      {"grzip", std::string("GRZipII\0\2\4:)", 12)},
                                                      {"lzop", "\x89LZO\0\r\n\x1A\n"}};
    const char* const before = std::getenv("PATH");
    ASSERT_NE(before, nullptr);
    const std::string path(before);
    setenv("PATH", (folder.url().path() + ":" + path).c_str(), 1);
    for (const auto& [program, beginning] : programs) {
        folder.file(program, "#!/bin/sh\ntouch " + folder.path("started"));
        std::filesystem::permissions(folder.path(program), std::filesystem::perms::owner_all);
        const auto found = read("a.tar", beginning + std::string(100, 'x'));
        EXPECT_EQ(found.error, (ArchiveError{Case::cannotOpen, "neznámý formát"})) << program;
    }
    setenv("PATH", path.c_str(), 1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("started")));
}

TEST_F(ArchiveReaderTest, asksForPasswordsAndChecksThem) {
    auto request = this->request(
        "a.zip",
        archiveOf({.format = "zip", .options = "zip:encryption=aes256", .password = "tajné"},
                  {{.path = "a", .content = "obsah"}}));
    for (const auto& [password, expected] :
         std::map<std::string, std::optional<Case>>{{"", Case::passwordRequired},
                                                    {"jiné", Case::wrongPassword},
                                                    {"tajné", std::nullopt}}) {
        request.password = password;
        const auto found = read(request);
        ASSERT_EQ(found.entries.size(), 1);
        EXPECT_TRUE(found.entries[0].met.entry.encrypted);
        const auto& error = found.entries[0].error;
        EXPECT_EQ(error ? std::optional(error->kind) : std::nullopt, expected);
        if (error) {
            EXPECT_EQ(error->encryption, "AES-256");
        } else {
            EXPECT_EQ(found.entries[0].data, "obsah");
        }
    }
}

TEST_F(ArchiveReaderTest, saysThatAnEncryptedListOfEntriesCannotBeRead) {
    // Encrypted, strongly, and so is the directory.
    const auto found = read("a.zip", zipOf({{.name = "a", .content = "x", .flags = 0x2041}}));
    EXPECT_EQ(found.error, (ArchiveError{Case::unsupportedEncryption, "ZIP"}));
    EXPECT_EQ(found.error->message(),
              "Šifrovaný archiv ZIP Fennik neumí rozbalit (umí jen šifrovaný ZIP).");
}

TEST_F(ArchiveReaderTest, endsWhenItIsCancelled) {
    std::vector<LibraryEntry> entries;
    for (int i = 0; i < 100; ++i)
        entries.push_back({.path = std::to_string(i), .content = std::string(1000, 'x')});
    const auto request = this->request("a.tar", archiveOf({}, entries));
    int asked = 0;
    read(request, [&asked] { return ++asked < 0; });
    for (int last = 1; last < asked; last += 7) {
        int calls = 0;
        const auto found = read(request, [&] { return ++calls >= last; });
        ASSERT_EQ(found.error, ArchiveError{Case::cancelled});
        EXPECT_EQ(found.error->message(), "");
    }
}

TEST_F(ArchiveReaderTest, isCancelledWithinOneLongStepOfTheLibrary) {
    // One jump over data that have to be unpacked for it.
    std::mt19937 random(1);
    std::string content(std::size_t{4} << 20U, '\0');
    std::ranges::generate(content, [&random] { return static_cast<char>(random()); });
    const auto request =
        this->request("a.tar.gz", archiveOf({.filters = {"gzip"}},
                                            {{.path = "a", .content = content}, {.path = "b"}}));
    int asked = 0;
    const auto stream = DirectArchives().open(request, [&asked] { return ++asked > 6; });
    ASSERT_TRUE(stream);
    ASSERT_TRUE((*stream)->next());
    EXPECT_FALSE((*stream)->next());
}

TEST_F(ArchiveReaderTest, opensNothingButRegularFiles) {
    const auto message = [this](std::string_view name) {
        const auto found = read({.url = folder.url().appending(name)});
        return found.error ? found.error->message() : "none";
    };
    folder.folder("folder.zip");
    ASSERT_EQ(mkfifo(folder.path("fifo.zip").c_str(), 0600), 0);
    folder.file("secret.zip", zipOf({{.name = "a"}}));
    ASSERT_EQ(chmod(folder.path("secret.zip").c_str(), 0), 0);
    EXPECT_EQ(message("folder.zip"), "Archiv nejde otevřít: není to obyčejný soubor");
    EXPECT_EQ(message("fifo.zip"), "Archiv nejde otevřít: není to obyčejný soubor");
    EXPECT_EQ(message("missing.zip"), "Archiv nejde otevřít: " + PosixError{ENOENT}.reason());
    EXPECT_TRUE(asOrdinaryUser([&] {
        return message("secret.zip") == "Archiv nejde otevřít: " + PosixError{EACCES}.reason();
    }));
}

TEST_F(ArchiveReaderTest, saysWhyTheDiskCannotBeRead) {
    const auto request = this->request("a.tar.gz", archiveOf({.filters = {"gzip"}}, usualEntries));
    ReadArchive found;
    const auto struck = forEachCall(
        {.calls = {SystemCall::open, SystemCall::fstat, SystemCall::pread}, .errorCode = EIO},
        {.prepare = [] {},
         .act = [&] { found = read(request); },
         .check =
             [&] {
                 expectTruth(found, "with a fault");
                 if (found.error) {
                     EXPECT_THAT(found.error->message(), HasSubstr(PosixError{EIO}.reason()));
                 } else {
                     EXPECT_EQ(found.entries.size(), usualEntries.size());
                 }
             }});
    EXPECT_EQ(struck, 4); // the file is read once, and once more to its end
    const FaultInjection pieces({.calls = {SystemCall::pread}, .mostBytes = 7});
    found = read(request);
    EXPECT_EQ(found.error, std::nullopt);
    EXPECT_EQ(found.entries.size(), usualEntries.size());
    expectTruth(found, "in pieces");
}

} // namespace fennik::test
