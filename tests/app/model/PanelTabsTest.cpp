#include "app/model/PanelModel.h"

#include "tests/support/PanelModelFixture.h"

#include <filesystem>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Step = PanelHistory::Step;

class PanelTabsTest : public PanelModelFixture {
protected:
    PanelTabsTest() {
        for (const auto* name : {"a", "b", "c"}) {
            temp.folder(name);
            temp.file(std::string(name) + "/same");
            temp.file(std::string(name) + "/" + name + name);
        }
    }
    /// Tabs at these folders, with the last one active.
    void open(const std::vector<std::string>& names) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (i > 0)
                panel.newTab();
            show(names[i]);
        }
    }
    std::vector<std::string> tabs() const {
        std::vector<std::string> names;
        for (const auto& tab : panel.tabs())
            names.emplace_back(FileUrl(tab.path).lastComponent());
        return names;
    }
    /// The rows are those of the active tab.
    void expectRowsOf(const std::string& name) {
        settle();
        EXPECT_EQ(panel.tab().path, temp.path(name));
        EXPECT_EQ(panel.items().folder().path(), temp.path(name));
    }
};

} // namespace

TEST_F(PanelTabsTest, closingLeavesTheRightTabActive) {
    open({"a", "b", "c", "a"});
    panel.selectTab(2);
    expectRowsOf("c");
    panel.closeTab(0);
    EXPECT_EQ(panel.activeTab(), 1U);
    EXPECT_TRUE(disk.isIdle()) << "the same tab stays, and is not read again";
    panel.closeTab(2);
    EXPECT_EQ(panel.activeTab(), 1U);
    panel.closeTab(7);
    EXPECT_THAT(tabs(), ElementsAre("b", "c"));
    panel.closeTab(1);
    expectRowsOf("b");
    panel.closeTab(0);
    EXPECT_THAT(tabs(), ElementsAre("b"));

    open({"b", "c", "a"});
    panel.selectTab(1);
    panel.closeTab(1);
    expectRowsOf("a");
    panel.selectTab(9);
    EXPECT_EQ(panel.activeTab(), 1U);
}

TEST_F(PanelTabsTest, aTabThatIsDraggedTakesItsStateAlong) {
    open({"a", "b", "c"});
    mark("cc");
    panel.moveTab(2, 0);
    EXPECT_THAT(tabs(), ElementsAre("c", "a", "b"));
    EXPECT_EQ(panel.activeTab(), 0U);
    EXPECT_TRUE(panel.marks().isMarked("cc"));
    panel.moveTab(1, 2);
    EXPECT_EQ(panel.activeTab(), 0U);
    panel.moveTab(0, 3);
    EXPECT_THAT(tabs(), ElementsAre("c", "b", "a"));
    EXPECT_TRUE(disk.isIdle());
}

TEST_F(PanelTabsTest, everyTabHasItsMarksCursorAndHistory) {
    open({"a", "b"});
    moveTo("same");
    mark("same");
    panel.previousTab();
    EXPECT_THAT(panel.marks().marked(), IsEmpty()) << "not even for the moment of loading";
    EXPECT_THAT(panel.targets(), IsEmpty());
    settle();
    moveTo("aa");
    mark("aa");
    show("c");
    EXPECT_THAT(panel.marks().marked(), IsEmpty());
    panel.nextTab();
    settle();
    EXPECT_EQ(underCursor(), "same");
    EXPECT_THAT(panel.marks().marked(), ElementsAre("same"));
    EXPECT_EQ(panel.markTotals().count, 1);
    panel.goBack();
    settle();
    EXPECT_EQ(panel.tab().path, temp.path("a")) << "a new tab begins where the old one was";
    panel.previousTab();
    settle();
    EXPECT_TRUE(panel.canGo(Step::back));

    // A name that is gone in the meantime is not marked any more.
    open({"a"});
    mark("aa");
    panel.newTab();
    std::filesystem::remove(temp.path("a/aa"));
    panel.previousTab();
    settle();
    EXPECT_THAT(panel.marks().marked(), IsEmpty());

    // The history of a closed tab is gone with it.
    panel.newTab();
    EXPECT_FALSE(panel.canGo(Step::back));
    settle();
    show("b");
    EXPECT_TRUE(panel.canGo(Step::back));
    panel.closeTab(panel.activeTab());
    panel.newTab();
    EXPECT_FALSE(panel.canGo(Step::back));
}

TEST_F(PanelTabsTest, whatWasOnItsWayInATabThatWasLeftNeverArrives) {
    open({"a", "b"});
    panel.navigate(FileUrl(temp.path("c")));
    panel.sizeAllFolders();
    panel.previousTab();
    expectRowsOf("a");
    EXPECT_THAT(tabs(), ElementsAre("a", "b"));
    panel.navigate(FileUrl(temp.path("missing")));
    settle();
    EXPECT_TRUE(panel.error());
    panel.nextTab();
    EXPECT_FALSE(panel.error());
    expectRowsOf("b");
    panel.previousTab();
    expectRowsOf("a");
}

TEST_F(PanelTabsTest, marksAndCursorBelongToTheRowsInViewWhileAFolderIsLoaded) {
    show("a");
    panel.navigate(FileUrl(temp.path("b")));
    moveTo("same");
    mark("same");
    EXPECT_EQ(panel.items().folder().path(), temp.path("a"));
    settle();
    EXPECT_THAT(panel.marks().marked(), IsEmpty()) << "another file has that name";
    EXPECT_EQ(panel.markTotals(), MarkTotals());
    EXPECT_EQ(underCursor(), "..");
}

TEST_F(PanelTabsTest, aSwapTakesAllAlongAlsoWhatIsOnItsWay) {
    PanelModel other(PanelSide::right, services(), settings, sizeCache, noPassword, temp.path("c"));
    open({"a", "b"});
    other.refresh();
    settle();
    temp.folder("c/big");
    other.refresh();
    settle();
    mark("bb");
    other.sizeAllFolders();
    panel.navigate(FileUrl(temp.path("a")));
    panel.swapWith(other);
    EXPECT_EQ(panel.items().folder().path(), temp.path("c"));
    EXPECT_TRUE(panel.sizing().contains("big"));
    EXPECT_THAT(other.sizing(), IsEmpty());
    EXPECT_TRUE(other.marks().isMarked("bb"));
    settle();
    EXPECT_EQ(panel.tabs().size(), 1U);
    EXPECT_EQ(panel.folderSizes().at("big"), 0);
    EXPECT_EQ(other.tabs().size(), 2U);
    EXPECT_EQ(other.tab().path, temp.path("a"));
    EXPECT_TRUE(other.canGo(Step::back));
    EXPECT_FALSE(panel.canGo(Step::back));

    // A panel whose loading was left after a swap still hears of changes.
    other.navigate(FileUrl(temp.path("b")));
    panel.swapWith(other);
    panel.escape();
    settle();
    timers.pass(250ms);
    settle();
    temp.file("a/new");
    events.tell(temp.path("a"));
    settle();
    timers.pass(250ms);
    settle();
    EXPECT_TRUE(panel.items().rowOf("new"));
}

TEST_F(PanelTabsTest, theHistoryForgetsItsOldestSteps) {
    PanelHistory history;
    const auto tab = Uuid::random();
    const int steps = static_cast<int>(PanelHistory::mostSteps) + 10;
    for (int i = 0; i < steps; ++i)
        history.record(tab, Step::navigate, "/" + std::to_string(i), "/" + std::to_string(i + 1));
    int walked = 0;
    auto here = "/" + std::to_string(steps);
    while (const auto target = history.target(tab, Step::back)) {
        history.record(tab, Step::back, std::exchange(here, *target), *target);
        ++walked;
    }
    EXPECT_EQ(walked, static_cast<int>(PanelHistory::mostSteps));
    EXPECT_EQ(here, "/10");
    EXPECT_EQ(history.target(tab, Step::forward), "/11");
}

TEST_F(PanelTabsTest, aSecondTabOfTheFolderHasItsRowsAtOnce) {
    show();
    moveTo("b");
    mark("b");
    panel.newTab();
    EXPECT_EQ(underCursor(), "b") << "before anything was read";
    EXPECT_TRUE(panel.marks().marked().empty());
    EXPECT_EQ(panel.markTotals().count, 0);
    panel.chooseSort(SortKey::name);
    settle();
    panel.previousTab();
    EXPECT_EQ(namesOf(panel.items())[1], "a") << "in the order of the first tab";
    EXPECT_EQ(panel.markTotals().count, 1);
}

} // namespace fennik::test
