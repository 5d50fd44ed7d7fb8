#include "tests/scenarios/Scenario.h"

#include <filesystem>

namespace fennik::test {

namespace {

using app::PanelSide;
using testing::ElementsAre;
using testing::IsEmpty;

class TabsScenario : public Scenario {
protected:
    TabsScenario() {
        for (const auto* name : {"left/a", "left/b", "right"})
            temp.folder(name);
        temp.file("left/x.txt", "xxx");
        temp.file("left/y.md", "y");
        temp.file("left/z.txt", "zz");
        std::filesystem::last_write_time(temp.path("left/y.md"),
                                         std::filesystem::file_time_type::clock::now() -
                                             std::chrono::hours(1));
        std::filesystem::last_write_time(temp.path("left/x.txt"),
                                         std::filesystem::file_time_type::clock::now() +
                                             std::chrono::hours(1));
        startAt("left", "right");
    }
    void open(std::string_view name) {
        moveTo(name);
        press("return");
    }
};

} // namespace

TEST_F(TabsScenario, tabsAreOpenedWalkedThroughAndClosed) {
    moveTo("x.txt");
    press("cmd+t");
    EXPECT_EQ(active().activeTab(), 1U);
    EXPECT_EQ(underCursor(), "x.txt") << "a new tab looks as the one it was made from";
    open("a");
    press("cmd+t");
    press("delete");
    open("b");
    EXPECT_THAT(tabPaths(PanelSide::left),
                ElementsAre(temp.path("left"), temp.path("left/a"), temp.path("left/b")));

    press("ctrl+tab");
    EXPECT_EQ(active().activeTab(), 0U) << "the first one follows the last one";
    EXPECT_EQ(underCursor(), "x.txt");
    press("help");
    press("cmd+pageup");
    EXPECT_EQ(path(), temp.path("left/b"));
    EXPECT_THAT(marked(), IsEmpty()) << "every tab has its own marks";
    press("ctrl+shift+tab");
    EXPECT_EQ(path(), temp.path("left/a"));
    press("cmd+w");
    EXPECT_EQ(path(), temp.path("left/b"));
    press("cmd+w");
    EXPECT_EQ(path(), temp.path("left"));
    EXPECT_THAT(marked(), ElementsAre("x.txt"));
    press("cmd+w");
    press("cmd+pagedown");
    EXPECT_THAT(tabPaths(PanelSide::left), ElementsAre(temp.path("left"))) << "the last one stays";
}

TEST_F(TabsScenario, everyTabHasItsOrder) {
    using testing::ElementsAreArray;
    const auto inOrder = [this] {
        auto all = names();
        return std::vector<std::string>(all.begin() + 3, all.end());
    };
    moveTo("y.md");
    press("ctrl+opt+cmd+1");
    EXPECT_THAT(inOrder(), ElementsAre("z.txt", "y.md", "x.txt"));
    press("cmd+opt+2");
    EXPECT_THAT(inOrder(), ElementsAre("y.md", "x.txt", "z.txt"));
    press("cmd+opt+3");
    const auto bySize = inOrder();
    press("ctrl+opt+cmd+3");
    EXPECT_THAT(inOrder(), ElementsAreArray(std::vector(bySize.rbegin(), bySize.rend())));
    press("ctrl+opt+cmd+4");
    const auto byDate = inOrder();
    press("cmd+opt+4");
    EXPECT_THAT(inOrder(), ElementsAreArray(std::vector(byDate.rbegin(), byDate.rend())));
    EXPECT_EQ(underCursor(), "y.md");
    EXPECT_TRUE(disk.isIdle());

    const auto order = active().tab().sort;
    press("cmd+t");
    EXPECT_EQ(active().tab().sort, order);
    press("cmd+opt+1");
    press("ctrl+tab");
    EXPECT_EQ(active().tab().sort, order);
}

TEST_F(TabsScenario, everythingIsFoundAgainOnTheNextStart) {
    moveTo("z.txt");
    press("cmd+opt+3");
    press("cmd+t");
    open("a");
    press("ctrl+shift+d");
    press("cmd+t");
    press("delete");
    moveTo("x.txt");
    press("ctrl+shift+tab");
    press("ctrl+tab");
    press("tab");
    press("cmd+shift+.");
    const auto recents = app().places().recents();
    std::vector<Uuid> ids;
    for (const auto& tab : app().panel(PanelSide::left).tabs())
        ids.push_back(tab.id);

    restart();
    EXPECT_EQ(app().activeSide(), PanelSide::right);
    EXPECT_THAT(tabPaths(PanelSide::left),
                ElementsAre(temp.path("left"), temp.path("left/a"), temp.path("left")));
    EXPECT_THAT(tabPaths(PanelSide::right), ElementsAre(temp.path("right")));
    auto& left = app().panel(PanelSide::left);
    for (std::size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(left.tabs()[i].id, ids[i]);
    EXPECT_EQ(left.activeTab(), 2U);
    EXPECT_EQ(underCursor(left), "x.txt");
    EXPECT_EQ(left.tabs()[0].sort.key, SortKey::size);
    EXPECT_EQ(left.tabs()[1].sort.key, SortKey::size);
    EXPECT_TRUE(app().settings().get(app::SettingKeys::showHidden));
    EXPECT_EQ(app().places().recents(), recents);
    EXPECT_THAT(app().places().favorites(), ElementsAre(temp.path("left/a")));
    press("tab");
    press("ctrl+tab");
    EXPECT_EQ(underCursor(), "z.txt") << "also in tabs that are not shown at first";
}

TEST_F(TabsScenario, aKilledProgramHasLostNothingButTheLastMoment) {
    press("cmd+t");
    open("b");
    press("tab");
    timers.pass(std::chrono::milliseconds(300));
    press("cmd+t"); // never saved
    start();
    EXPECT_EQ(app().activeSide(), PanelSide::right);
    EXPECT_THAT(tabPaths(PanelSide::left), ElementsAre(temp.path("left"), temp.path("left/b")));
    EXPECT_THAT(tabPaths(PanelSide::right), ElementsAre(temp.path("right")));
}

TEST_F(TabsScenario, aBurstOfChangesIsWrittenOnce) {
    timers.pass(std::chrono::milliseconds(300));
    const auto before = store.writes();
    for (int i = 0; i < 3; ++i)
        press("cmd+t");
    timers.pass(std::chrono::milliseconds(299));
    EXPECT_EQ(store.writes(), before);
    timers.pass(std::chrono::milliseconds(1));
    EXPECT_EQ(store.writes(), before + 1);
    app().saveNow();
    EXPECT_EQ(store.writes(), before + 1) << "nothing has changed since";
}

TEST_F(TabsScenario, aFolderThatNeverRestsDoesNotKeepTabsFromBeingSaved) {
    press("cmd+t");
    for (int i = 0; i < 10; ++i) {
        temp.file("left/log" + std::to_string(i));
        events.tell(temp.path("left"));
        settle();
        timers.pass(std::chrono::milliseconds(250));
        settle();
    }
    EXPECT_TRUE(active().items().rowOf("log9"));
    start();
    EXPECT_THAT(tabPaths(PanelSide::left), ElementsAre(temp.path("left"), temp.path("left")));
}

TEST_F(TabsScenario, aNameThatIsNoTextComesBackByteForByte) {
    temp.folder("left/\xE8\xFF");
    temp.file("left/\xE8\xFF/\xC3(");
    press("ctrl+r");
    open("\xE8\xFF");
    moveTo("\xC3(");
    press("ctrl+shift+d");
    restart();
    EXPECT_EQ(path(), temp.path("left/\xE8\xFF"));
    EXPECT_EQ(underCursor(), "\xC3(");
    EXPECT_THAT(app().places().favorites(), ElementsAre(temp.path("left/\xE8\xFF")));
}

} // namespace fennik::test
