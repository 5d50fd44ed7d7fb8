#include "app/model/PanelModel.h"

#include "tests/support/DiskTree.h"
#include "tests/support/PanelModelFixture.h"

#include <filesystem>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class PanelArchiveTest : public PanelModelFixture {
protected:
    PanelArchiveTest() {
        for (const auto* name : {"shown/sub", "elsewhere"})
            temp.folder(name);
        for (const auto* name : {"shown/a.zip", "shown/bad.zip", "shown/plain.txt"})
            temp.file(name, "as it was");
        archives.content["a.zip"] = {
            ManualEntry::folder("docs"),
            ManualEntry::file("docs/deep/x.txt", "xxxx"),
            ManualEntry::file("docs/y.txt", "yy"),
            ManualEntry::file("b.tar", "inner"),
            ManualEntry::file(".hidden", "h"),
            ManualEntry::link("to-docs", "docs/../docs"),
            ManualEntry::link("to-nothing", "../docs"),
            ManualEntry::file("z.txt", "zzz"),
        };
        archives.content["b.tar"] = {ManualEntry::folder("n"), ManualEntry::file("n/m.txt", "m")};
        QObject::connect(&panel, &PanelModel::changed, [this](PanelChanges changes) {
            seen |= changes;
            if (!changes.testFlag(PanelChange::opening))
                return;
            if (!panel.openingFailure().empty())
                failures.push_back(panel.openingFailure());
            if (panel.takenFile().place)
                taken.push_back(panel.takenFile());
        });
        show("shown");
    }

    void open(std::string_view name) {
        moveTo(name);
        EXPECT_TRUE(panel.openItem());
        settle();
    }
    /// Goes on with the cursor on a row of the archive.
    void openArchive() {
        open("a.zip");
        ASSERT_TRUE(panel.archive());
    }
    std::vector<std::string> names() { return namesOf(panel.items()); }
    std::string inner() { return panel.archive() ? panel.archive()->inner : "(a folder)"; }
    std::string shownPath() { return temp.path("shown"); }
    /// Another archive stands in the place of "a.zip" now.
    void replaceArchive() {
        archives.content["a.zip"] = {ManualEntry::file("docs/new.txt", "new")};
        temp.file("shown/a.zip", "as it is now");
        timers.pass(10s);
    }
    std::vector<std::string> places() {
        std::vector<std::string> found;
        std::error_code error;
        for (const auto& run : std::filesystem::directory_iterator(temp.path("cache"), error)) {
            for (const auto& entry : std::filesystem::directory_iterator(run.path())) {
                if (entry.is_directory())
                    found.push_back(entry.path());
            }
        }
        return found;
    }

    std::vector<std::string> failures;
    std::vector<TakenFile> taken;
    PanelChanges seen;
};

} // namespace

TEST_F(PanelArchiveTest, anArchiveShowsItsEntriesAsAFolderDoes) {
    EXPECT_FALSE(panel.archive());
    openArchive();
    EXPECT_THAT(names(), ElementsAre("..", "docs", "to-docs", "b.tar", "to-nothing", "z.txt"));
    EXPECT_EQ(panel.tab().path, shownPath()) << "the tab stays where the archive lies";
    EXPECT_EQ(panel.location().path(), temp.path("shown/a.zip"));
    EXPECT_EQ(panel.cursor(), 0U);
    EXPECT_TRUE(seen.testFlag(PanelChange::tabs));

    const auto file = panel.items().view(panel.items().rowOf("z.txt").value());
    EXPECT_EQ(file.size, 3);
    EXPECT_EQ(file.mode, 0644);
    EXPECT_EQ(file.modified, (Date{1'700'000'000, 0}));
    EXPECT_EQ(panel.folderSizes().at("docs"), 6) << "known without being asked for";
    panel.wantLinkTargets(0, panel.items().size());
    EXPECT_EQ(panel.linkTarget("to-docs")->path, "docs/../docs");
    EXPECT_FALSE(panel.linkTarget("to-docs")->isBroken);
    EXPECT_TRUE(panel.linkTarget("to-nothing")->isBroken) << "it leads out of the archive";
    EXPECT_TRUE(disk.isIdle()) << "nothing on the disk is asked about links";

    panel.chooseSort(SortKey::size);
    EXPECT_THAT(names(), ElementsAre("..", "docs", "to-docs", "b.tar", "z.txt", "to-nothing"))
        << "folders by their sizes too";
    store.setValue("showHidden", true);
    panel.takeShowHidden();
    EXPECT_TRUE(panel.items().rowOf(".hidden"));
    EXPECT_TRUE(panel.jumpTo("B"));
    EXPECT_EQ(underCursor(), "b.tar");
    EXPECT_FALSE(panel.sizeAllFolders());
    moveTo("docs");
    panel.markAndSize();
    EXPECT_EQ(panel.markTotals().bytes, 6);
    EXPECT_THAT(panel.sizing(), IsEmpty());
}

TEST_F(PanelArchiveTest, theParentLeadsOutStepByStepWithTheCursorOnWhatWasLeft) {
    openArchive();
    open("docs");
    EXPECT_EQ(inner(), "docs");
    open("deep");
    EXPECT_THAT(names(), ElementsAre("..", "x.txt"));
    mark("x.txt");
    open("..");
    EXPECT_EQ(underCursor(), "deep");
    EXPECT_THAT(panel.marks().marked(), IsEmpty()) << "marks belong to one folder";
    panel.goToParent();
    panel.goToParent(); // the second press counts from where the first one leads
    settle();
    EXPECT_EQ(inner(), "(a folder)");
    EXPECT_EQ(underCursor(), "a.zip");
    EXPECT_THAT(names(), ElementsAre("..", "sub", "a.zip", "bad.zip", "plain.txt"));

    openArchive();
    open("to-docs");
    EXPECT_EQ(inner(), "docs");
    panel.goToInner("docs/deep");
    settle();
    panel.leaveArchive();
    settle();
    EXPECT_EQ(underCursor(), "a.zip");
    EXPECT_EQ(archives.opened.size(), 2U) << "an open archive is read once";
}

TEST_F(PanelArchiveTest, theHistoryKnowsFoldersOnly) {
    open("sub");
    open("..");
    openArchive();
    EXPECT_TRUE(panel.canGo(PanelHistory::Step::back));
    panel.goBack();
    settle();
    EXPECT_EQ(inner(), "(a folder)");
    EXPECT_EQ(underCursor(), "a.zip");

    openArchive();
    panel.navigate(temp.url().appending("elsewhere"));
    settle();
    EXPECT_FALSE(panel.archive());
    panel.goBack();
    settle();
    EXPECT_EQ(panel.location().path(), shownPath());
    // What cannot be shown leaves everything as it is.
    openArchive();
    panel.navigate(temp.url().appending("nowhere"));
    settle();
    EXPECT_TRUE(panel.error());
    EXPECT_TRUE(panel.escape());
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "docs", "to-docs", "b.tar", "to-nothing", "z.txt"));
}

TEST_F(PanelArchiveTest, whatCannotBeReadIsToldAndTheFolderStays) {
    const auto before = names();
    open("bad.zip");
    EXPECT_THAT(failures, ElementsAre("Archiv nejde otevřít: neznámý formát"));
    EXPECT_FALSE(panel.archive());
    EXPECT_FALSE(panel.error());
    EXPECT_EQ(names(), before);
    EXPECT_EQ(underCursor(), "bad.zip");
    moveTo("plain.txt");
    EXPECT_FALSE(panel.openItem());
}

TEST_F(PanelArchiveTest, escapeEndsTheReading) {
    moveTo("a.zip");
    bool isStopped = false;
    archives.whileOpening = [&] {
        EXPECT_TRUE(panel.isOpeningArchive());
        isStopped = panel.escape();
    };
    EXPECT_TRUE(panel.openItem());
    EXPECT_TRUE(panel.loading());
    settle();
    EXPECT_TRUE(isStopped);
    EXPECT_FALSE(panel.isOpeningArchive());
    EXPECT_FALSE(panel.archive());
    EXPECT_THAT(failures, IsEmpty()) << "who has stopped it is told nothing";
    EXPECT_EQ(underCursor(), "a.zip");
    EXPECT_EQ(lines.size(), 1U) << "no entry was read";
}

TEST_F(PanelArchiveTest, anotherArchiveInItsPlaceIsReadWholeOrNotAtAll) {
    openArchive();
    open("docs");
    const auto old = panel.archive()->index;
    timers.pass(10s);
    events.tell(shownPath());
    settle();
    EXPECT_EQ(panel.archive()->index, old) << "something else in the folder has changed";

    replaceArchive();
    archives.content.erase("a.zip"); // it is only half written
    events.tell(shownPath());
    settle();
    EXPECT_EQ(panel.archive()->index, old);
    EXPECT_THAT(failures, IsEmpty()) << "nobody has asked for it";
    EXPECT_THAT(names(), ElementsAre("..", "deep", "y.txt"));
    panel.refresh();
    settle();
    EXPECT_EQ(failures.size(), 1U) << "the user has asked";
    EXPECT_EQ(panel.archive()->index, old);

    replaceArchive();
    events.tell(shownPath());
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "new.txt"));
    archives.content["a.zip"] = {ManualEntry::file("top.txt", "t")};
    panel.refresh();
    settle();
    EXPECT_EQ(inner(), "") << "the folder is not there any more";
    EXPECT_THAT(names(), ElementsAre("..", "top.txt"));

    std::filesystem::remove(temp.path("shown/a.zip"));
    timers.pass(10s);
    events.tell(shownPath());
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "top.txt"));
    panel.goToParent();
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "sub", "bad.zip", "plain.txt"));
}

TEST_F(PanelArchiveTest, aTabKeepsItsArchiveAndIsSavedAsItsFolder) {
    openArchive();
    open("docs");
    moveTo("y.txt");
    mark("deep");
    panel.newTab();
    settle();
    EXPECT_EQ(inner(), "docs") << "a new tab is a copy";
    EXPECT_EQ(underCursor(), "y.txt");
    panel.openTab(shownPath());
    settle();
    EXPECT_EQ(inner(), "(a folder)") << "a tab in an archive does not show the folder";
    EXPECT_EQ(panel.tabs().size(), 3U);
    for (const auto& tab : panel.tabsToSave())
        EXPECT_EQ(tab.path, shownPath());
    EXPECT_EQ(panel.tabsToSave()[0].cursorName, "a.zip");
    EXPECT_EQ(panel.tabsToSave()[1].cursorName, "a.zip");

    panel.selectTab(0);
    EXPECT_THAT(names(), IsEmpty()) << "rows of the folder are none of the archive's";
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "deep", "y.txt"));
    EXPECT_EQ(underCursor(), "y.txt");
    EXPECT_TRUE(panel.marks().isMarked("deep"));
    EXPECT_EQ(panel.tabsToSave()[0].cursorName, "a.zip");
    EXPECT_EQ(archives.opened.size(), 1U);
    panel.closeTab(0);
    settle();
    EXPECT_EQ(inner(), "docs");
}

TEST_F(PanelArchiveTest, panelsChangePlacesWithTheirArchives) {
    PanelModel other{PanelSide::right, services(), settings,
                     sizeCache,        noPassword, temp.path("elsewhere")};
    other.refresh();
    openArchive();
    open("docs");
    moveTo("y.txt");
    panel.swapWith(other);
    settle();
    EXPECT_FALSE(panel.archive());
    EXPECT_EQ(panel.tab().path, temp.path("elsewhere"));
    EXPECT_EQ(other.archive()->inner, "docs");
    EXPECT_EQ(other.cursorItem()->name, "y.txt");
    replaceArchive();
    events.tell(shownPath());
    settle();
    EXPECT_THAT(namesOf(other.items()), ElementsAre("..", "new.txt")) << "it is watched there";
}

TEST_F(PanelArchiveTest, aPasswordIsAskedForUntilItIsRightOrNoneIsGiven) {
    archives.passwords["a.zip"] = "slon";
    passwords = {"mrož", "slon"};
    open("a.zip");
    EXPECT_THAT(wasWrong, ElementsAre(false, true));
    ASSERT_TRUE(panel.archive());
    EXPECT_EQ(panel.archive()->password, "slon");
    replaceArchive();
    events.tell(shownPath());
    settle();
    EXPECT_EQ(wasWrong.size(), 2U) << "it is known as long as the archive is open";
    archives.passwords["a.zip"] = "another";
    replaceArchive();
    events.tell(shownPath());
    settle();
    EXPECT_EQ(wasWrong.size(), 2U) << "nobody is asked out of the blue";
    EXPECT_TRUE(panel.archive());
    panel.goToParent();
    settle();
    open("a.zip");
    EXPECT_FALSE(panel.archive()) << "the third question has no answer";
    EXPECT_EQ(wasWrong.size(), 3U);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(PanelArchiveTest, anArchiveInsideAnotherOpensAndLeadsBack) {
    openArchive();
    open("b.tar");
    EXPECT_THAT(names(), ElementsAre("..", "n"));
    EXPECT_EQ(panel.location().path(), temp.path("shown/a.zip/b.tar"));
    EXPECT_THAT(panel.archive()->index->url().path(), StartsWith(temp.path("cache")));
    EXPECT_EQ(places().size(), 1U);
    open("n");
    EXPECT_EQ(panel.tabsToSave()[0].cursorName, "a.zip");
    panel.refresh();
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "m.txt"));
    EXPECT_EQ(places().size(), 1U) << "the copy that is shown no more is gone";
    open("..");
    open("..");
    EXPECT_EQ(inner(), "");
    EXPECT_EQ(panel.archive()->place.path(), temp.path("shown/a.zip"));
    EXPECT_EQ(underCursor(), "b.tar");
    EXPECT_THAT(places(), IsEmpty());

    open("b.tar");
    panel.leaveArchive();
    settle();
    EXPECT_EQ(underCursor(), "a.zip");
    EXPECT_THAT(places(), IsEmpty());
}

TEST_F(PanelArchiveTest, aSingleFileIsTakenOutForReadingOnly) {
    openArchive();
    open("z.txt");
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(contentOf(taken[0].url.path()), "zzz");
    EXPECT_EQ(std::filesystem::status(taken[0].url.path()).permissions(),
              std::filesystem::perms::owner_read);
    EXPECT_EQ(inner(), "") << "the panel shows what it did";
    EXPECT_EQ(underCursor(), "z.txt");
    taken.clear();
    panel.refresh();
    settle();
    EXPECT_THAT(places(), IsEmpty());

    moveTo("to-nothing");
    EXPECT_FALSE(panel.openItem());
    archives.content["a.zip"] = {ManualEntry::file("large.tar", std::string(1001, 'x')),
                                 ManualEntry::file("gone.txt", "x")};
    archives.content["a.zip"][1].header.declaresSize = false;
    archives.content["a.zip"][1].header.entry.size = 0;
    archives.content["a.zip"][1].data = std::string(5000, 'x');
    panel.refresh();
    settle();
    open("large.tar");
    open("gone.txt");
    ASSERT_EQ(failures.size(), 2U);
    EXPECT_EQ(failures[0], "„large.tar“ je na otevření přímo z archivu příliš velký soubor, jde to "
                           "do 1,0 kB. Nejdřív ho rozbalte.");
    EXPECT_THAT(failures[1], StartsWith("„gone.txt“ je na otevření přímo z archivu příliš velký"))
        << "its size is not known before";
    EXPECT_THAT(taken, IsEmpty());
    EXPECT_THAT(places(), IsEmpty());
}

} // namespace fennik::test
