#include "core/archives/ArchivePacker.h"

#include "core/base/Uuid.h"
#include "tests/support/PackFixture.h"
#include "tests/support/SystemCallFaults.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <random>
#include <sstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const std::string noSuchName = " nejde zabalit: formát takový název neumí.";
const std::string containsItself = "Archiv nemůže přepsat soubor, který se do něj balí.";

std::string contentOf(const FileUrl& file) {
    std::ostringstream content;
    content << std::ifstream(file.path(), std::ios::binary).rdbuf();
    return content.str();
}

/// Does not get smaller by compression.
std::string noise(std::size_t length) {
    std::mt19937 source(7);
    std::string bytes(length, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(source());
    return bytes;
}

void setModified(const std::string& path, std::int64_t seconds, long nanoseconds = 0) {
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

struct stat statusOf(const std::string& path) {
    struct stat status{};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

} // namespace

class ArchivePackerTest : public PackFixture {
protected:
    /// A bit of everything that every format keeps.
    void makeTree() {
        temp.folder("from/složka/v ní/ještě");
        temp.folder("from/prázdná");
        temp.file("from/složka/žluťoučký kůň.txt", "příliš");
        temp.file("from/složka/v ní/prázdný");
        temp.file("from/složka/v ní/ještě/náhodný", noise(700'000));
        temp.file("from/složka/v ní/dlouhý", std::string(3'000'000, 'a'));
        temp.file("from/" + std::string(200, 'n'), "dlouhé jméno");
        temp.link("from/složka/odkaz", "v ní/ještě");
        temp.link("from/visí", "nikam");
        temp.file("from/původní", "dvě jména");
        link(from("původní").path().c_str(), from("složka/druhé jméno").path().c_str());
        chmod(from("složka/v ní/dlouhý").path().c_str(), 0755);
        chmod(from("prázdná").path().c_str(), 0700);
        setModified(from("původní").path(), 1'400'000'000);
        sources = {from("složka"), from("prázdná"), from(std::string(200, 'n')), from("visí"),
                   from("původní")};
    }

    void expectFailure(const std::vector<FileUrl>& items, const FileUrl& destination,
                       const PackOptions& options, const std::string& sentence) {
        const auto before = diskTree(temp.url().path());
        context.failure.clear();
        context.steps.clear();
        EXPECT_FALSE(pack(items, destination, options));
        EXPECT_EQ(context.failure, sentence);
        EXPECT_THAT(context.steps, IsEmpty());
        EXPECT_EQ(diskTree(temp.url().path()), before);
    }

    std::vector<FileUrl> sources;
};

class ArchiveFormatsTest : public ArchivePackerTest,
                           public testing::WithParamInterface<ArchiveFormat> {};

INSTANTIATE_TEST_SUITE_P(All, ArchiveFormatsTest, testing::ValuesIn(allArchiveFormats));

TEST_P(ArchiveFormatsTest, otherProgramsUnpackWhatWasPackedAtEveryLevel) {
    makeTree();
    const auto tree = diskTree(temp.path("from"));
    for (const int level : {-1, 0, 1, 6, 9, 12}) {
        const auto archive = to("a" + std::to_string(level));
        ASSERT_TRUE(pack(sources, archive, {.format = GetParam(), .level = level}))
            << context.failure;
        const auto target = unpacked(archive, GetParam());
        EXPECT_EQ(diskTree(target), tree) << level;
        EXPECT_EQ(statusOf(target + "/složka/v ní/dlouhý").st_mode, S_IFREG | 0755U);
        EXPECT_EQ(statusOf(target + "/prázdná").st_mode, S_IFDIR | 0700U);
        EXPECT_EQ(statusOf(target + "/původní").st_mtim.tv_sec, 1'400'000'000);
        EXPECT_EQ(runProgram({"bsdtar", "-tf", archive.path()}).exitCode, 0);
    }
    EXPECT_THAT(context.errors, IsEmpty());
    EXPECT_EQ(diskTree(temp.path("from")), tree);
}

TEST_P(ArchiveFormatsTest, progressGoesThroughAllItems) {
    makeTree();
    std::vector<std::string> names;
    context.onName = [&](const std::string& name) { names.push_back(name); };
    const auto archive = to("a." + std::string(extensionOf(GetParam())));
    ASSERT_TRUE(pack(sources, archive, {.format = GetParam()}));
    EXPECT_EQ(context.totalFiles, 13);
    EXPECT_EQ(context.doneFiles, 13);
    EXPECT_EQ(context.totalBytes, 3'700'045);
    EXPECT_EQ(context.doneBytes, context.totalBytes);
    EXPECT_THAT(names, SizeIs(13));
    EXPECT_THAT(context.steps,
                ElementsAre(testing::VariantWith<UndoSteps::Created>(UndoSteps::Created{archive})));
}

TEST_P(ArchiveFormatsTest, namesAndLinksComeOutAsTheyWentInOrAreRefused) {
    const auto option = PackOptions{.format = GetParam()};
    const bool keepsBytes =
        GetParam() != ArchiveFormat::zip && GetParam() != ArchiveFormat::sevenZip;
    temp.folder("from/jména");
    temp.file("from/jména/řádek\npod", "2");
    temp.file("from/jména/ mezery ", "3");
    temp.file("from/jména/-rf", "4");
    temp.file("from/jména/" + std::string(255, 'x'), "5");
    const auto tree = diskTree(temp.path("from"));
    ASSERT_TRUE(pack({from("jména")}, to("jména"), option)) << context.failure;
    EXPECT_EQ(diskTree(unpacked(to("jména"), GetParam())), tree);

    temp.folder("from/lomítko");
    temp.file("from/lomítko/zpět\\ne", "1");
    if (GetParam() == ArchiveFormat::zip)
        expectFailure({from("lomítko")}, to("a"), option, "„zpět\\ne“" + noSuchName);
    else
        EXPECT_TRUE(pack({from("lomítko")}, to("lomítko"), option));

    temp.folder("from/latinka");
    temp.file("from/latinka/k\xf9\xf2", "6");
    temp.link("from/odkaz", "k\xf9\xf2");
    if (!keepsBytes) {
        expectFailure({from("latinka")}, to("a"), option, "„k��“" + noSuchName);
        expectFailure({from("odkaz")}, to("a"), option,
                      "„odkaz“ nejde zabalit: formát neumí cíl odkazu.");
        return;
    }
    ASSERT_TRUE(
        pack({from("latinka"), from("odkaz"), from("jména"), from("lomítko")}, to("a"), option));
    EXPECT_EQ(diskTree(unpacked(to("a"), GetParam())), diskTree(temp.path("from")));
}

TEST_P(ArchiveFormatsTest, timesThatTheFormatCannotHoldBecomeTheNearestOnes) {
    temp.folder("from/časy");
    const std::vector<std::int64_t> times{-200'000'000, 1, 300'000'000, 4'500'000'000};
    for (const auto time : times) {
        temp.file("from/časy/" + std::to_string(time));
        setModified(from("časy/" + std::to_string(time)).path(), time);
    }
    ASSERT_TRUE(pack({from("časy")}, to("a"), {.format = GetParam()}));
    const auto target = unpacked(to("a"), GetParam());
    for (const auto time : times) {
        const auto expected = GetParam() == ArchiveFormat::zip
                                  ? std::clamp<std::int64_t>(time, 0, 2'147'483'647)
                                  : time;
        EXPECT_EQ(statusOf(target + "/časy/" + std::to_string(time)).st_mtim.tv_sec, expected);
    }
}

TEST_F(ArchivePackerTest, levelsAreThoseOfTheFormat) {
    temp.file("from/x", std::string(100'000, 'x'));
    const auto packed = [&](ArchiveFormat format, int level) {
        const auto archive = to(std::string(extensionOf(format)) + std::to_string(level));
        EXPECT_TRUE(pack({from("x")}, archive, {.format = format, .level = level}));
        return contentOf(archive);
    };
    EXPECT_THAT(packed(ArchiveFormat::tarBz2, 0), testing::StartsWith("BZh1"));
    EXPECT_THAT(packed(ArchiveFormat::tarBz2, 12), testing::StartsWith("BZh9"));
    for (const auto format : {ArchiveFormat::zip, ArchiveFormat::sevenZip, ArchiveFormat::tarGz}) {
        EXPECT_THAT(packed(format, -5), HasSubstr(std::string(60'000, 'x')));
        EXPECT_THAT(packed(format, 1).size(), testing::Lt(2000U));
    }
}

TEST_F(ArchivePackerTest, aPasswordEncryptsZipAndNothingElse) {
    makeTree();
    const auto archive = to("a.zip");
    ASSERT_TRUE(pack(sources, archive, {.password = "heslo č. 1"}));
    EXPECT_EQ(diskTree(unpacked(archive, ArchiveFormat::zip, "heslo č. 1")),
              diskTree(temp.path("from")));
    EXPECT_NE(runProgram({"7z", "t", "-pjiné", archive.path()}).exitCode, 0);
    EXPECT_THAT(runProgram({"7z", "l", "-slt", archive.path()}).output, HasSubstr("AES-256"));
    EXPECT_THAT(contentOf(archive), Not(HasSubstr("dlouhé jméno")));
    expectFailure(sources, to("a.7z"), {.format = ArchiveFormat::sevenZip, .password = "x"},
                  "Heslo umí jen formát ZIP.");
}

TEST_F(ArchivePackerTest, junkOfAnotherSystemIsLeftOutWhereThatIsWanted) {
    temp.folder("from/s/__MACOSX");
    temp.file("from/s/__MACOSX/x", "x");
    temp.file("from/s/.DS_Store", "x");
    temp.file("from/s/._fotka.jpg", "x");
    temp.file("from/s/Icon\r", "x");
    temp.file("from/s/fotka.jpg", "x");
    temp.file("from/.DS_Store", "x");
    ASSERT_TRUE(pack({from("s"), from(".DS_Store")}, to("a")));
    EXPECT_THAT(diskTree(unpacked(to("a"), ArchiveFormat::zip)),
                ElementsAre(Key("s"), Key("s/fotka.jpg")));
    ASSERT_TRUE(pack({from("s"), from(".DS_Store")}, to("b"), {.skipJunk = false}));
    EXPECT_EQ(diskTree(unpacked(to("b"), ArchiveFormat::zip)), diskTree(temp.path("from")));
    expectFailure({from(".DS_Store")}, to("c"), {}, "Není co zabalit.");
}

TEST_F(ArchivePackerTest, whatIsNoFileIsLeftOutAndNeverWaitedFor) {
    temp.folder("from/s");
    temp.file("from/s/soubor", "x");
    ASSERT_EQ(mkfifo(from("s/roura").path().c_str(), 0600), 0);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(descriptor, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    from("s/zásuvka").path().copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_TRUE(pack({from("s")}, to("a")));
    EXPECT_THAT(context.errors, ElementsAre("„roura“ nejde zabalit: není to soubor ani složka.",
                                            "„zásuvka“ nejde zabalit: není to soubor ani složka."));
    EXPECT_EQ(context.failure, "");
    EXPECT_THAT(diskTree(unpacked(to("a"), ArchiveFormat::zip)),
                ElementsAre(Key("s"), Key("s/soubor")));
    close(descriptor);
}

TEST_F(ArchivePackerTest, nothingIsPackedOverOrIntoItself) {
    temp.folder("from/s/hlouběji");
    temp.file("from/s/x.zip", "x");
    temp.link("jinudy", temp.path("from/s/hlouběji"));
    expectFailure({from("s/x.zip")}, from("s/x.zip"), {}, containsItself);
    expectFailure({from("s")}, from("s/nový.zip"), {}, containsItself);
    expectFailure({from("s")}, from("s"), {}, containsItself);
    expectFailure({from("s")}, FileUrl(temp.path("jinudy/nový.zip")), {}, containsItself);
    expectFailure({FileUrl(temp.path("jinudy/../../s"))}, from("s/hlouběji/nový.zip"), {},
                  containsItself);
    ASSERT_TRUE(pack({from("s/x.zip")}, from("s/nový.zip")));
}

TEST_F(ArchivePackerTest, whatCannotBeMadeIsRefusedBeforeItIsBegun) {
    temp.file("from/x", "x");
    temp.file("to/je.zip", "původní");
    temp.folder("from/s");
    temp.file("from/s/x", "jiné");
    expectFailure({}, to("a"), {}, "Není co zabalit.");
    expectFailure({from("x")}, to("je.zip"), {}, "Archiv nejde uložit: File exists");
    expectFailure({from("x")}, to("není/a"), {}, "Archiv nejde uložit: No such file or directory");
    expectFailure({from("x")}, to(std::string(300, 'a')), {},
                  "Archiv nejde uložit: File name too long");
    expectFailure({from("není")}, to("a"), {}, "„není“ nejde přečíst: No such file or directory");
    expectFailure({from("x"), from("s/x")}, to("a"), {},
                  "„x“ nejde zabalit: dvě položky by měly stejný název.");
}

TEST_F(ArchivePackerTest, whatMayNotBeReadFailsThePacking) {
    temp.folder("from/s");
    temp.file("from/s/tajný", "x");
    chmod(from("s/tajný").path().c_str(), 0);
    chmod(temp.path("to").c_str(), 0777);
    EXPECT_TRUE(asOrdinaryUser([this] {
        expectFailure({from("s")}, to("a"), {}, "„tajný“ nejde přečíst: Permission denied");
        return !HasFailure();
    }));
    chmod(from("s").path().c_str(), 0111);
    EXPECT_TRUE(asOrdinaryUser([this] {
        EXPECT_FALSE(pack({from("s")}, to("a")));
        EXPECT_EQ(context.failure, "„s“ nejde přečíst: Permission denied");
        return !HasFailure();
    }));
}

TEST_F(ArchivePackerTest, treesBeyondWhatArchivesAreReadWithAreRefused) {
    std::string path = "from/d";
    for (int depth = 0; depth < 256; ++depth)
        path += "/d";
    temp.folder(path);
    ASSERT_TRUE(pack({from("d")}, to("a"), {.format = ArchiveFormat::tarGz})) << context.failure;
    temp.folder(path + "/d");
    expectFailure({from("d")}, to("b"), {}, "„d“ nejde zabalit: cesta k němu je příliš dlouhá.");
}

TEST_F(ArchivePackerTest, unfinishedArchivesAreNeverPacked) {
    const auto left = ".fennik-" + Uuid::random().text();
    temp.folder("from/s");
    temp.file("from/s/" + left, "x");
    temp.file("from/s/.fennik-x", "x");
    temp.file("from/s/" + left + ".zip", "x");
    ASSERT_TRUE(pack({from("s")}, to("a")));
    EXPECT_THAT(diskTree(unpacked(to("a"), ArchiveFormat::zip)),
                UnorderedElementsAre(Key("s"), Key("s/.fennik-x"), Key("s/" + left + ".zip")));
    EXPECT_EQ(contentOf(from("s/" + left)), "x");
}

} // namespace fennik::test
