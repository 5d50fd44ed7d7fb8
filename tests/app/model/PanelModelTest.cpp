#include "app/model/PanelModel.h"

#include "tests/support/PanelModelFixture.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::test {

namespace {

using app::PanelChange;
using app::PanelChanges;
using app::PanelModel;
using app::PanelSide;
using FolderOpener::Failure;
using testing::ElementsAre;
using Step = app::PanelHistory::Step;

class PanelModelTest : public PanelModelFixture {
protected:
    PanelModelTest() {
        for (const auto* name : {"a", "a/inner", "b"})
            temp.folder(name);
        temp.file("c.txt", "ccc");
        temp.file("d.txt");
        temp.file(".hidden");
        QObject::connect(&panel, &PanelModel::changed,
                         [this](PanelChanges changes) { seen.push_back(changes); });
    }

    std::vector<PanelChanges> seen;
};

} // namespace

TEST_F(PanelModelTest, showsTheSortedFolderWithoutHiddenEntries) {
    panel.refresh();
    EXPECT_TRUE(panel.loading());
    settle();
    EXPECT_FALSE(panel.loading());
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "a", "b", "c.txt", "d.txt"));
    EXPECT_EQ(panel.rawItems().size(), 5U);
    EXPECT_GT(panel.freeSpace().value_or(0), 0);
    EXPECT_THAT(lines, ElementsAre("Načteno 5 položek za 0 ms"));

    // One change for what loading began, one for all that it brought.
    ASSERT_EQ(seen.size(), 2U);
    EXPECT_TRUE(seen[1].testFlag(PanelChange::items));

    disk.runAll();
    settings.set(app::SettingKeys::showHidden, true);
    panel.takeShowHidden();
    EXPECT_TRUE(disk.isIdle()) << "hidden entries are there without another reading";
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "a", "b", ".hidden", "c.txt", "d.txt"));
}

TEST_F(PanelModelTest, aLateResultOfAnOlderLoadIsDropped) {
    panel.navigate(FileUrl(temp.path("a")));
    panel.navigate(FileUrl(temp.path("b")));
    disk.runLast(); // "b" is read first …
    disk.runAll();  // … and "a" finishes last.
    main.runAll();
    EXPECT_EQ(panel.tab().path, temp.path("b"));

    show("a");
    panel.navigate(FileUrl(temp.path("missing")));
    panel.refresh();
    disk.runLast();
    disk.runAll();
    main.runAll();
    EXPECT_EQ(panel.error(), std::nullopt) << "a late failure is dropped as well";
}

TEST_F(PanelModelTest, nothingHappensToAPanelThatIsGone) {
    {
        PanelModel other(PanelSide::right, services(), settings, sizeCache, noPassword,
                         temp.url().path());
        other.refresh();
        disk.runAll();
        events.tell(temp.url().path());
    }
    while (!main.isIdle())
        main.runLast();
}

TEST_F(PanelModelTest, settingsThatChangeDuringALoadHoldForItsResult) {
    panel.refresh();
    panel.chooseSort(SortKey::name);
    settings.set(app::SettingKeys::showHidden, true);
    panel.takeShowHidden();
    settle();
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "b", "a", "d.txt", "c.txt", ".hidden"));
}

TEST_F(PanelModelTest, goingUpLandsOnTheFolderJustLeft) {
    show();
    moveTo("a");
    panel.openItem();
    settle();
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "inner"));
    EXPECT_EQ(underCursor(), "..");
    panel.openItem();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
    EXPECT_EQ(underCursor(), "a");
}

TEST_F(PanelModelTest, backAndForwardWalkTheHistoryOfSuccessfulSteps) {
    show();
    show("a");
    show("missing");
    EXPECT_TRUE(panel.error());
    panel.escape();
    settle();
    show("b");
    panel.goBack();
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("a"));
    panel.goBack();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
    EXPECT_EQ(underCursor(), "a");
    EXPECT_FALSE(panel.canGo(Step::back));
    panel.goForward();
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("a"));
    EXPECT_TRUE(panel.canGo(Step::forward));
    show("a/inner");
    EXPECT_FALSE(panel.canGo(Step::forward)) << "a new way ends the old one";
}

TEST_F(PanelModelTest, aFailedNavigationChangesNothingButShowsWhy) {
    show();
    moveTo("c.txt");
    const auto generation = panel.generation();
    temp.folder("gone");
    panel.navigate(FileUrl(temp.path("gone")));
    rmdir(temp.path("gone").c_str());
    settle();
    EXPECT_EQ(panel.error(), Failure::notFound(FileUrl(temp.path("gone"))));
    EXPECT_FALSE(panel.ownFolderFailed());
    EXPECT_EQ(panel.tab().path, temp.url().path());
    EXPECT_FALSE(panel.canGo(Step::back));
    EXPECT_EQ(panel.generation(), generation);
    EXPECT_EQ(lines.back(), "Složku nejde otevřít: " + panel.error()->message());

    // Enter tries the same folder again, Esc returns to the rows as they were.
    panel.openItem();
    settle();
    EXPECT_TRUE(panel.error());
    EXPECT_TRUE(panel.escape());
    EXPECT_FALSE(panel.error());
    EXPECT_EQ(underCursor(), "c.txt");
    settle();
    EXPECT_EQ(underCursor(), "c.txt");
}

TEST_F(PanelModelTest, aFolderThatVanishesWhileShownLeavesTheWayToTheNearestOne) {
    show("a/inner");
    std::filesystem::remove_all(temp.path("a"));
    panel.refresh();
    settle();
    EXPECT_EQ(panel.error(), Failure::notFound(panel.folder()));
    EXPECT_TRUE(panel.ownFolderFailed());
    EXPECT_TRUE(panel.items().empty());
    EXPECT_EQ(panel.tab().path, temp.path("a/inner"));
    EXPECT_FALSE(panel.escape()) << "there is nothing to go back to";
    panel.goToParent();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
}

TEST_F(PanelModelTest, aFolderThatComesBackHasItsCursorBack) {
    show();
    moveTo("c.txt");
    files.fail(FaultyFileSystem::Call::readFolder, EIO);
    panel.refresh();
    settle();
    EXPECT_TRUE(panel.ownFolderFailed());
    files.heal();
    panel.openItem();
    settle();
    EXPECT_FALSE(panel.error());
    EXPECT_EQ(underCursor(), "c.txt");
}

TEST_F(PanelModelTest, theCursorStaysOnItsItemOrOnTheNearestThatIsLeft) {
    show();
    moveTo("c.txt");
    temp.file("aa.txt");
    panel.refresh();
    settle();
    EXPECT_EQ(underCursor(), "c.txt");
    unlink(temp.path("c.txt").c_str());
    panel.refresh();
    settle();
    EXPECT_EQ(underCursor(), "d.txt");
    unlink(temp.path("d.txt").c_str());
    unlink(temp.path("aa.txt").c_str());
    panel.refresh();
    settle();
    EXPECT_EQ(underCursor(), "b");
}

TEST_F(PanelModelTest, sortingKeepsTheCursorAndReadsNothing) {
    show();
    moveTo("c.txt");
    panel.chooseSort(SortKey::size);
    EXPECT_TRUE(disk.isIdle());
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "a", "b", "c.txt", "d.txt"));
    EXPECT_EQ(underCursor(), "c.txt");
    panel.chooseSort(SortKey::size);
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "a", "b", "d.txt", "c.txt"));
    EXPECT_EQ(underCursor(), "c.txt");
}

TEST_F(PanelModelTest, aLoadThatHangsCanBeLeft) {
    show();
    panel.navigate(FileUrl(temp.path("a")));
    EXPECT_TRUE(panel.escape());
    EXPECT_FALSE(panel.loading());
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path()) << "what comes in late is not shown";

    PanelModel fresh(PanelSide::right, services(), settings, sizeCache, noPassword,
                     temp.url().path());
    fresh.refresh();
    EXPECT_TRUE(fresh.escape());
    ASSERT_TRUE(fresh.error());
    EXPECT_TRUE(fresh.error()->message().ends_with("načítání bylo zastaveno."));
    fresh.openItem();
    settle();
    EXPECT_EQ(fresh.items().size(), 5U);
}

TEST_F(PanelModelTest, aFileOpensItsFolderWithTheCursorOnIt) {
    PanelModel other(PanelSide::right, services(), settings, sizeCache, noPassword,
                     temp.path("d.txt"));
    other.refresh();
    settle();
    EXPECT_EQ(other.tab().path, temp.url().path());
    EXPECT_EQ(other.items().view(other.cursor()).name, "d.txt");
}

TEST_F(PanelModelTest, onlyWhatIsAFolderIsEntered) {
    temp.folder("Kalkulace.app");
    temp.link("toA", "a");
    show();
    moveTo("c.txt");
    panel.openItem();
    EXPECT_TRUE(disk.isIdle());
    moveTo("Kalkulace.app");
    panel.openItem();
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("Kalkulace.app"));
    panel.goToParent();
    settle();
    moveTo("toA");
    panel.openItem();
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("toA"));
    EXPECT_THAT(namesOf(panel.items()), ElementsAre("..", "inner"));
}

TEST_F(PanelModelTest, theCursorNeverLeavesTheRows) {
    panel.setCursor(3);
    EXPECT_EQ(panel.cursor(), 0U);
    show();
    panel.setCursor(-5);
    EXPECT_EQ(panel.cursor(), 0U);
    panel.setCursor(99);
    EXPECT_EQ(panel.cursor(), panel.items().size() - 1);
    seen.clear();
    panel.setCursor(99);
    EXPECT_TRUE(seen.empty()) << "nothing has changed";
}

TEST_F(PanelModelTest, theRootHasNoWayUp) {
    panel.navigate(FileUrl());
    settle();
    EXPECT_FALSE(panel.items().view(0).isParentLink);
    panel.goToParent();
    EXPECT_TRUE(disk.isIdle());
}

TEST_F(PanelModelTest, aHiddenItemThatWasAskedForIsShownAllTheSame) {
    PanelModel other(PanelSide::right, services(), settings, sizeCache, noPassword,
                     temp.path(".hidden"));
    other.refresh();
    settle();
    EXPECT_THAT(namesOf(other.items()), ElementsAre("..", "a", "b", ".hidden", "c.txt", "d.txt"));
    EXPECT_EQ(other.items().view(other.cursor()).name, ".hidden");
    other.chooseSort(SortKey::name);
    EXPECT_EQ(other.items().view(other.cursor()).name, ".hidden");
    other.navigate(FileUrl(temp.path("a")));
    settle();
    other.goToParent();
    settle();
    EXPECT_FALSE(other.items().rowOf(".hidden"));
}

TEST_F(PanelModelTest, theWayUpNeverEndsAtAFolderThatCannotBeShown) {
    temp.folder("locked/a/b");
    chmod(temp.path("locked").c_str(), 0);
    EXPECT_TRUE(asOrdinaryUser([this] {
        PanelModel other(PanelSide::right, services(), settings, sizeCache, noPassword,
                         temp.path("locked/a/b"));
        other.refresh();
        settle();
        const bool isDenied = other.error() == Failure::noPermission(other.folder());
        other.goToParent();
        settle();
        return isDenied && !other.error() && other.tab().path == temp.url().path();
    }));
}

TEST_F(PanelModelTest, everyPressOfAWayUpCountsOnASlowDisk) {
    show("a/inner");
    panel.goToParent();
    panel.goToParent();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
    EXPECT_EQ(underCursor(), "a");
}

TEST_F(PanelModelTest, backIsUsedUpEvenWhereItsFolderBecameAFile) {
    show();
    show("a");
    show();
    std::filesystem::remove_all(temp.path("a"));
    temp.file("a");
    panel.goBack();
    settle();
    EXPECT_EQ(panel.tab().path, temp.url().path());
    panel.goBack();
    settle();
    EXPECT_FALSE(panel.canGo(Step::back));
}

TEST_F(PanelModelTest, aLateLinkTargetNeverReplacesANewerOne) {
    temp.link("l", "old");
    show();
    panel.wantLinkTargets(0, 99);
    disk.runAll(); // read, but not yet back
    unlink(temp.path("l").c_str());
    temp.link("l", "new");
    panel.refresh();
    settle();
    panel.wantLinkTargets(0, 99);
    settle();
    ASSERT_NE(panel.linkTarget("l"), nullptr);
    EXPECT_EQ(panel.linkTarget("l")->path, "new");
}

TEST_F(PanelModelTest, linksToRemoteVolumesAreFollowedApartFromTheListing) {
    temp.folder("remote");
    temp.folder("remote/inside");
    temp.folder("here");
    temp.link("here/toFolder", temp.path("remote/inside"));
    temp.link("here/broken", temp.path("remote/gone"));
    volumes = {{.mountPoint = "/", .type = "ext4"},
               {.mountPoint = temp.path("remote"), .type = "nfs", .isRemote = true}};
    disk.stick(temp.path("remote"));
    panel.navigate(FileUrl(temp.path("here")));
    settle();
    const auto leadsToFolder = [this] {
        return panel.items().view(*panel.items().rowOf("toFolder")).linksToDirectory;
    };
    panel.wantLinkTargets(0, 99);
    settle();
    EXPECT_TRUE(panel.settled());
    EXPECT_FALSE(leadsToFolder());
    EXPECT_FALSE(panel.linkTarget("broken")->isBroken);
    disk.stick("");
    settle();
    timers.pass(std::chrono::seconds(1));
    settle();
    EXPECT_TRUE(leadsToFolder());
    EXPECT_TRUE(panel.linkTarget("broken")->isBroken);
    EXPECT_FALSE(panel.linkTarget("toFolder")->isBroken);

    // Back here, it is known from the first reading on.
    disk.stick(temp.path("remote"));
    panel.navigate(temp.url());
    settle();
    panel.navigate(FileUrl(temp.path("here")));
    settle();
    EXPECT_TRUE(leadsToFolder());

    // An answer that comes while the folder is read again, whose links are others by now.
    rmdir(temp.path("remote/inside").c_str());
    unlink(temp.path("here/broken").c_str());
    temp.link("here/broken", "toFolder");
    temp.file("local");
    temp.link("here/late", temp.path("remote"));
    panel.refresh();
    disk.stick("");
    settle();
    timers.pass(std::chrono::seconds(1));
    settle();
    timers.pass(std::chrono::seconds(1));
    settle();
    EXPECT_FALSE(leadsToFolder());
    EXPECT_TRUE(panel.items().view(*panel.items().rowOf("late")).linksToDirectory);

    // Repaired with a link to something else.
    unlink(temp.path("here/broken").c_str());
    temp.link("here/broken", temp.path("local"));
    panel.refresh();
    settle();
    panel.wantLinkTargets(0, 99);
    settle();
    EXPECT_FALSE(panel.linkTarget("broken")->isBroken);
}

TEST_F(PanelModelTest, linkTargetsAreReadOnceForTheRowsInView) {
    temp.link("l1", "a");
    temp.link("l2", "nowhere");
    show();
    const auto first = *panel.items().rowOf("l1");
    panel.wantLinkTargets(first, first + 1);
    panel.wantLinkTargets(first, first + 1);
    EXPECT_FALSE(panel.settled());
    settle();
    ASSERT_NE(panel.linkTarget("l1"), nullptr);
    EXPECT_EQ(panel.linkTarget("l1")->path, "a");
    EXPECT_FALSE(panel.linkTarget("l1")->isBroken);
    EXPECT_EQ(panel.linkTarget("l2"), nullptr) << "not in view";
    panel.wantLinkTargets(0, 99);
    settle();
    EXPECT_TRUE(panel.linkTarget("l2")->isBroken);
    EXPECT_TRUE(panel.settled());

    // After a reload the known target is still shown, and asked for again.
    panel.refresh();
    settle();
    EXPECT_NE(panel.linkTarget("l1"), nullptr);
    panel.wantLinkTargets(0, 99);
    EXPECT_FALSE(disk.isIdle());
}

} // namespace fennik::test
