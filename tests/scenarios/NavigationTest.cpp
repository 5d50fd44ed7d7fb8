#include "tests/scenarios/Scenario.h"

#include <filesystem>
#include <unistd.h>

namespace fennik::test {

namespace {

using app::PanelSide;
using app::Toast;
using testing::ElementsAre;

class NavigationScenario : public Scenario {
protected:
    NavigationScenario() {
        for (const auto* name : {"left/a/inner", "left/Zprávy.app", "right"})
            temp.folder(name);
        temp.file("left/c.txt", "ccc");
        temp.file("left/.hidden");
        temp.link("left/broken", "nowhere");
        temp.link("left/toRight", "../right");
        startAt("left", "right");
    }
};

} // namespace

TEST_F(NavigationScenario, tabGoesToTheOtherPanelAndBack) {
    press("tab");
    EXPECT_EQ(app().activeSide(), PanelSide::right);
    EXPECT_EQ(path(), temp.path("right"));
    press("shift+tab");
    EXPECT_EQ(app().activeSide(), PanelSide::left);
}

TEST_F(NavigationScenario, enterOpensWhatOpensAndSaysWhatDoesNot) {
    moveTo("a");
    press("return");
    EXPECT_EQ(path(), temp.path("left/a"));
    EXPECT_EQ(underCursor(), "..");
    press("cmd+down");
    EXPECT_EQ(path(), temp.path("left"));
    EXPECT_EQ(underCursor(), "a");

    moveTo("toRight");
    press("return");
    EXPECT_EQ(path(), temp.path("left/toRight"));
    press("delete");
    moveTo("Zprávy.app");
    press("return");
    EXPECT_EQ(path(), temp.path("left/Zprávy.app"));
    press("delete");

    moveTo("broken");
    active().wantLinkTargets(0, active().items().size());
    settle();
    press("return");
    EXPECT_EQ(toast(), "„broken“ nejde otevřít: cíl odkazu neexistuje.");
    EXPECT_EQ(app().toast()->kind, Toast::Kind::error);
    EXPECT_EQ(path(), temp.path("left"));
}

TEST_F(NavigationScenario, whatEnterOpensIsTheItemThatWasThereWhenItWasPressed) {
    moveTo("a");
    pressOnly("return");
    moveTo("toRight");
    active().chooseSort(SortKey::modified);
    settle();
    EXPECT_EQ(path(), temp.path("left/a"));
}

TEST_F(NavigationScenario, upBackAndForwardRetraceTheWay) {
    moveTo("a");
    press("return");
    moveTo("inner");
    press("return");
    press("cmd+up");
    EXPECT_EQ(underCursor(), "inner");
    press("opt+up");
    EXPECT_EQ(path(), temp.path("left"));
    EXPECT_EQ(underCursor(), "a");
    press("cmd+[");
    EXPECT_EQ(path(), temp.path("left/a"));
    press("opt+left");
    EXPECT_EQ(path(), temp.path("left/a/inner"));
    press("cmd+]");
    press("opt+right");
    EXPECT_EQ(path(), temp.path("left"));
    press("opt+right");
    EXPECT_EQ(path(), temp.path("left")) << "there is nothing further";
    EXPECT_THAT(app().places().recents(),
                ElementsAre(temp.path("left"), temp.path("left/a"), temp.path("left/a/inner")));
}

TEST_F(NavigationScenario, theWayBackUpIsUnderTheCursor) {
    temp.folder("left/a/inner");
    app().activePanel().navigate(FileUrl(temp.path("left/a/inner")));
    settle();
    app().activePanel().navigate(FileUrl(temp.path("left")));
    settle();
    EXPECT_EQ(underCursor(), "a") << "as from a crumb, or a path that was typed";
    app().activePanel().openTab(temp.path("left/a"));
    settle();
    EXPECT_THAT(app().places().recents(),
                ElementsAre(temp.path("left/a"), temp.path("left"), temp.path("left/a/inner")));
}

TEST_F(NavigationScenario, homeIsOneKeyAway) {
    temp.file("home/.profile");
    press("cmd+shift+.");
    press("cmd+shift+h");
    EXPECT_EQ(path(), home().path());
    EXPECT_THAT(names(), ElementsAre("..", ".profile"));

    // A home that does not exist says so, and leaves everything as it was.
    press("cmd+[");
    std::filesystem::remove_all(home().path());
    press("opt+home");
    ASSERT_TRUE(active().error());
    EXPECT_EQ(active().error()->message(),
              "Složka „home“ teď není dostupná – neexistuje, nebo je na odpojeném disku či síti.");
    EXPECT_EQ(path(), temp.path("left"));
    press("escape");
    EXPECT_EQ(active().error(), std::nullopt);
    EXPECT_EQ(active().items().folder().path(), temp.path("left"));
}

TEST_F(NavigationScenario, refreshReadsTheFolderAgainUnderTheCursor) {
    moveTo("c.txt");
    temp.file("left/b.txt");
    unlink(temp.path("left/broken").c_str());
    press("ctrl+r");
    EXPECT_THAT(names(), ElementsAre("..", "a", "toRight", "b.txt", "c.txt", "Zprávy.app"));
    EXPECT_EQ(underCursor(), "c.txt");
}

TEST_F(NavigationScenario, everyRequestForThePathFieldIsANewOne) {
    press("cmd+l");
    const auto first = *app().focusPathRequest();
    EXPECT_EQ(first.side, PanelSide::left);
    press("cmd+shift+g");
    EXPECT_GT(app().focusPathRequest()->token, first.token);
    press("tab");
    press("cmd+l");
    EXPECT_EQ(app().focusPathRequest()->side, PanelSide::right);
}

TEST_F(NavigationScenario, aPathInTheClipboardIsGoneTo) {
    for (const auto& text : {" " + temp.path("right") + "\n", "file://" + temp.path("right"),
                             temp.path("left/a/../../right/")}) {
        clipboard.content = text;
        press("cmd+shift+v");
        EXPECT_EQ(path(), temp.path("right")) << text;
        press("cmd+[");
    }
    clipboard.content = temp.path("left/.hidden");
    press("cmd+shift+v");
    EXPECT_EQ(underCursor(), ".hidden");
    clipboard.content = "~";
    press("cmd+shift+v");
    EXPECT_EQ(path(), home().path());
}

TEST_F(NavigationScenario, whatIsNoPathInTheClipboardIsSaidToBeNone) {
    using namespace std::string_literals;
    for (const auto& text :
         {""s, " \n"s, "left"s, "../left"s, "/tmp\n/usr"s, "/tmp\0x"s, "file://"s, "file:///%zz"s,
          "file://elsewhere/tmp"s, "https://example.org/"s, std::string(10'000, 'a')}) {
        clipboard.content = text;
        press("cmd+shift+v");
        EXPECT_EQ(takeToast(), "Ve schránce není cesta.") << text.substr(0, 40);
        EXPECT_FALSE(active().error());
        EXPECT_EQ(path(), temp.path("left"));
    }
    clipboard.content = "/" + std::string(10'000, 'a');
    press("cmd+shift+v");
    EXPECT_TRUE(active().error()) << "a path, though none that can be opened";
    EXPECT_EQ(path(), temp.path("left"));
}

TEST_F(NavigationScenario, favouritesAreAskedForAddedOnceAndRemoved) {
    press("ctrl+d");
    EXPECT_EQ(app().placesRequest()->side, PanelSide::left);
    const auto token = app().placesRequest()->token;
    press("ctrl+d");
    EXPECT_GT(app().placesRequest()->token, token);

    press("ctrl+shift+d");
    EXPECT_EQ(takeToast(), "Přidáno do oblíbených: left");
    press("ctrl+shift+d");
    EXPECT_EQ(takeToast(), "Už je v oblíbených");
    EXPECT_THAT(app().places().favorites(), ElementsAre(temp.path("left")));
    EXPECT_THAT(app().settings().get(app::SettingKeys::favorites), ElementsAre(temp.path("left")));
    app().removeFavorite(temp.path("left"));
    EXPECT_EQ(takeToast(), "Odebráno z oblíbených");
    EXPECT_TRUE(app().settings().get(app::SettingKeys::favorites).empty());
}

TEST_F(NavigationScenario, hiddenFilesComeAndGoInBothPanels) {
    temp.file("right/.other");
    press("tab");
    press("ctrl+r");
    press("tab");
    moveTo("c.txt");
    press("cmd+shift+.");
    EXPECT_EQ(takeToast(), "Skryté soubory zobrazeny");
    EXPECT_TRUE(active().items().rowOf(".hidden"));
    EXPECT_TRUE(other().items().rowOf(".other"));
    EXPECT_EQ(underCursor(), "c.txt");
    moveTo(".hidden");
    press("help");
    press("cmd+shift+.");
    EXPECT_EQ(takeToast(), "Skryté soubory schované");
    EXPECT_FALSE(active().items().rowOf(".hidden"));
    EXPECT_FALSE(other().items().rowOf(".other"));
    EXPECT_TRUE(marked().empty()) << "nothing is marked that nobody sees";
}

TEST_F(NavigationScenario, thePanelsChangePlaces) {
    press("cmd+t");
    moveTo("c.txt");
    press("help");
    moveTo("a");
    press("ctrl+opt+cmd+3");
    press("cmd+u");
    EXPECT_EQ(app().activeSide(), PanelSide::left) << "the keyboard stays where it was";
    EXPECT_THAT(tabPaths(PanelSide::left), ElementsAre(temp.path("right")));
    EXPECT_THAT(tabPaths(PanelSide::right), ElementsAre(temp.path("left"), temp.path("left")));
    EXPECT_EQ(other().activeTab(), 1U);
    EXPECT_EQ(other().tab().sort.key, SortKey::size);
    EXPECT_EQ(underCursor(other()), "a");
    EXPECT_TRUE(other().marks().isMarked("c.txt"));
    EXPECT_EQ(other().markTotals().bytes, 3);
    EXPECT_TRUE(marked().empty());

    // Each panel hears of changes in what it shows now.
    temp.file("right/new.txt");
    events.tell(temp.path("right"));
    settle();
    timers.pass(std::chrono::seconds(1));
    settle();
    EXPECT_THAT(names(), ElementsAre("..", "new.txt"));
}

TEST_F(NavigationScenario, theOtherPanelComesHere) {
    moveTo("a");
    press("return");
    press("cmd+=");
    EXPECT_EQ(other().tab().path, temp.path("left/a"));
    EXPECT_TRUE(other().canGo(app::PanelHistory::Step::back));
    EXPECT_EQ(app().activeSide(), PanelSide::left);
}

TEST_F(NavigationScenario, keysRestWhileADialogIsOpen) {
    press("numplus");
    ASSERT_TRUE(app().dialog());
    app::KeyDispatcher keys(app(), shortcuts());
    EXPECT_FALSE(keys.handle(KeyCombo::parse("tab"), PanelSide::left));
    EXPECT_EQ(app().activeSide(), PanelSide::left);
    app().closeDialog();
    EXPECT_FALSE(keys.handle(KeyCombo::parse("cmd+opt+shift+9"), PanelSide::left));
    EXPECT_TRUE(keys.handle(KeyCombo::parse("cmd+a"), PanelSide::right));
    EXPECT_EQ(app().activeSide(), PanelSide::right) << "a key counts where it was pressed";
}

} // namespace fennik::test
