#include "core/listing/FolderOpener.h"

#include "core/listing/PackageTypes.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <sys/stat.h>
#include <utility>

namespace fennik::test {

namespace {

using FolderOpener::Failure;
using FolderOpener::ShowHidden;

class FolderOpenerTest : public testing::Test {
protected:
    auto open(const FileUrl& url, ShowHidden hidden = ShowHidden::yes) const {
        return FolderOpener::open(files, url, hidden);
    }

    FileItem itemNamed(std::string_view name) const {
        const auto listing = open(temp.url());
        const auto row = listing ? listing->items.rowOf(name) : std::nullopt;
        return row ? listing->items[*row] : FileItem{};
    }

    FaultyFileSystem files;
    TempFolder temp;
};

} // namespace

TEST_F(FolderOpenerTest, classifiesEntries) {
    temp.file("x.app", "123");
    temp.folder("Mail.APP");
    temp.folder("photos.2024");
    temp.link("toFolder", "photos.2024");
    temp.link("toFile", "x.app");
    temp.link("dangling", "missing");
    temp.link("loop", "loop");

    EXPECT_EQ(itemNamed("x.app").kind, FileKind::file);
    EXPECT_EQ(itemNamed("x.app").size, 3);
    EXPECT_EQ(itemNamed("x.app").url, temp.url().appending("x.app"));
    EXPECT_EQ(itemNamed("Mail.APP").kind, FileKind::package);
    EXPECT_TRUE(itemNamed("Mail.APP").url.hasDirectoryForm());
    EXPECT_EQ(itemNamed("photos.2024").kind, FileKind::directory);
    EXPECT_TRUE(itemNamed("toFolder").opensAsFolder());
    EXPECT_FALSE(itemNamed("toFolder").url.hasDirectoryForm());
    for (const auto* name : {"toFile", "dangling", "loop"}) {
        EXPECT_EQ(itemNamed(name).kind, FileKind::symlink);
        EXPECT_FALSE(itemNamed(name).opensAsFolder());
    }
}

TEST_F(FolderOpenerTest, linksToVolumesThatMayNotAnswerAreNotFollowed) {
    const auto remote = temp.path("remote");
    const auto volumes = [remote] {
        return std::vector<Volume>{{.mountPoint = "/", .type = "ext4"},
                                   {.mountPoint = remote, .type = "nfs", .isRemote = true}};
    };
    temp.folder("remote");
    temp.folder("remote/inside");
    temp.link("remote/own", "inside");
    temp.folder("here");
    temp.folder("here/below");
    temp.link("here/loop", "loop");
    temp.link("here/local", "below/../../here//below/");
    for (const auto& [name, target] : std::initializer_list<std::pair<const char*, std::string>>{
             {"absolute", remote + "/inside"},
             {"root", remote},
             {"relative", "below/.././../remote/inside"},
             {"twice", "relative"}})
        temp.link(std::string("here/") + name, target);

    const FolderOpener::KnownLinks known{{temp.path("here/twice"), true}};
    const auto listing =
        FolderOpener::open(files, FileUrl(temp.path("here")), ShowHidden::yes, volumes, known);
    ASSERT_TRUE(listing);
    ASSERT_EQ(listing->remoteLinks.size(), 1U);
    std::vector<std::string> names;
    for (const auto& link : listing->remoteLinks.at(remote))
        names.push_back(link.name);
    EXPECT_THAT(names, testing::UnorderedElementsAre("absolute", "root", "relative", "twice"));
    const auto leadsToFolder = [&](std::string_view name) {
        return listing->items[*listing->items.rowOf(name)].linksToDirectory;
    };
    EXPECT_TRUE(leadsToFolder("local"));
    EXPECT_TRUE(leadsToFolder("twice")) << "was found out before";
    EXPECT_FALSE(leadsToFolder("absolute"));
    EXPECT_FALSE(leadsToFolder("loop"));

    const auto within = FolderOpener::open(files, FileUrl(remote), ShowHidden::yes, volumes);
    ASSERT_TRUE(within);
    EXPECT_TRUE(within->remoteLinks.empty()) << "the volume answers, as it was listed";
    EXPECT_TRUE(within->items[*within->items.rowOf("own")].linksToDirectory);

    // Where a folder really lies decides what ".." is and which volume answers.
    temp.folder("aside");
    temp.link("aside/here", "../here");
    temp.link("aside/inside", remote);
    const auto through = [&](const std::string& folder) {
        return FolderOpener::open(files, FileUrl(temp.path(folder)), ShowHidden::yes, volumes);
    };
    EXPECT_EQ(through("aside/here")->remoteLinks.at(remote).size(), 4U);
    EXPECT_TRUE(through("aside/inside")->remoteLinks.empty());
}

TEST_F(FolderOpenerTest, hiddenEntriesAreListedOnlyWhenAsked) {
    temp.file(".hidden");
    temp.file("shown");
    ASSERT_TRUE(open(temp.url()));
    EXPECT_EQ(open(temp.url())->items.size(), 2U);
    EXPECT_TRUE(itemNamed(".hidden").isHidden);
    EXPECT_EQ(open(temp.url(), ShowHidden::no)->items.size(), 1U);
}

TEST_F(FolderOpenerTest, aFileOpensItsFolderWithTheCursorOnIt) {
    temp.folder("sub");
    temp.file("sub/a");
    mkfifo(temp.path("sub/pipe").c_str(), 0600);
    for (const auto* name : {"a", "pipe"}) {
        const auto listing = open(temp.url().appending("sub/./../sub").appending(name));
        ASSERT_TRUE(listing);
        EXPECT_EQ(listing->directory, FileUrl(temp.path("sub"), FileUrl::Form::directory));
        EXPECT_EQ(listing->selectName, name);
    }
    EXPECT_EQ(open(temp.url())->selectName, std::nullopt);
}

TEST_F(FolderOpenerTest, aVolumeWithoutBulkReadingIsReadThroughTheStream) {
    temp.file("a");
    for (const int code : {ENOTSUP, EINVAL}) {
        files.fail(FaultyFileSystem::Call::readFolder, code);
        const auto listing = open(temp.url());
        ASSERT_TRUE(listing);
        EXPECT_EQ(listing->items.size(), 1U);
    }
}

TEST_F(FolderOpenerTest, errorsBecomeOneOfThreeFailures) {
    const auto url = temp.url();
    for (const int code : {EPERM, EACCES})
        EXPECT_EQ(Failure::of({code}, url), Failure::noPermission(url));
    for (const int code : {ENOENT, ENXIO, ENODEV, ENOTDIR})
        EXPECT_EQ(Failure::of({code}, url), Failure::notFound(url));
    for (const int code : {EIO, ELOOP, ESTALE, 98765}) {
        files.fail(FaultyFileSystem::Call::readFolder, code);
        const auto listing = open(url);
        ASSERT_FALSE(listing);
        EXPECT_EQ(listing.error(), Failure::unreadable(url, std::strerror(code)));
    }
}

TEST_F(FolderOpenerTest, realFaultsGiveTheirFailures) {
    temp.link("loop", "loop");
    temp.folder("locked");
    chmod(temp.path("locked").c_str(), 0);
    const auto failure = [this](std::string_view name) {
        const auto listing = open(temp.url().appending(name));
        return listing ? std::nullopt : std::optional(listing.error().kind);
    };
    EXPECT_EQ(failure("missing"), Failure::Case::notFound);
    EXPECT_EQ(failure("missing/below"), Failure::Case::notFound);
    EXPECT_EQ(failure("loop"), Failure::Case::unreadable);
    EXPECT_TRUE(asOrdinaryUser([&] { return failure("locked") == Failure::Case::noPermission; }));
}

TEST_F(FolderOpenerTest, messagesAreWholeSentences) {
    EXPECT_EQ(
        Failure::noPermission(FileUrl("/home/jana/Pošta")).message(),
        "macOS nedovolil Fenniku otevřít „Pošta“. Povolte mu Plný přístup k disku a zkuste to "
        "znovu.");
    EXPECT_EQ(Failure::notFound(FileUrl("/a\nb\xFF")).message(),
              "Složka „a↵b\uFFFD“ teď není dostupná – neexistuje, nebo je na odpojeném disku či "
              "síti.");
    EXPECT_EQ(Failure::of({EIO}, FileUrl()).message(),
              std::string("Složku „/“ nejde přečíst: ") + std::strerror(EIO));
}

TEST(PackageTypesTest, theExtensionDecidesInAnyCase) {
    EXPECT_TRUE(PackageTypes::isPackageName("Kalkulace.app"));
    EXPECT_TRUE(PackageTypes::isPackageName("Text.RTFD"));
    EXPECT_FALSE(PackageTypes::isPackageName(".app"));
    EXPECT_FALSE(PackageTypes::isPackageName("app"));
    EXPECT_FALSE(PackageTypes::isPackageName("x.app."));
}

} // namespace fennik::test
