#include "tests/scenarios/Scenario.h"

#include <expected>
#include <string>

namespace fennik::test {

namespace {

using app::PanelSide;
using app::Toast;
using testing::ElementsAre;
using testing::IsEmpty;

class DesktopScenario : public Scenario {
protected:
    DesktopScenario() {
        temp.folder("left/folder");
        temp.folder("right");
        temp.file("left/a.txt", "aaaa");
        temp.file("left/b.txt", "bb");
        startAt("left", "right");
    }
    void copyOverToTheOtherPanel() {
        moveTo("a.txt");
        press("f5");
        app().confirmTransfer(dialog<app::TransferDialog>().target);
        settleAll();
    }
    std::string left(std::string_view name) { return temp.path("left/" + std::string(name)); }
};

} // namespace

TEST_F(DesktopScenario, filesGoToTheDesktopAndItsRefusalIsTold) {
    moveTo("a.txt");
    press("return");
    EXPECT_THAT(workspace.takeAsked(), ElementsAre("open " + left("a.txt")));
    workspace.answerAll(std::unexpected("„a.txt“ je program."));
    EXPECT_EQ(app().toast()->kind, Toast::Kind::error);
    EXPECT_EQ(takeToast(), "„a.txt“ je program.");

    press("f4");
    app().settings().set(app::SettingKeys::editorApp, "Kreslítko");
    press("f4");
    EXPECT_THAT(workspace.takeAsked(), ElementsAre("edit " + left("a.txt") + " with ''",
                                                   "edit " + left("a.txt") + " with 'Kreslítko'"));
    workspace.answerAll({});
    EXPECT_EQ(toast(), "");
    for (const auto* name : {"folder", ".."}) {
        moveTo(name);
        press("f4");
        EXPECT_EQ(takeToast(), "Složku nejde upravit – Enter ji otevře.") << name;
    }
    EXPECT_THAT(workspace.takeAsked(), IsEmpty());
}

TEST_F(DesktopScenario, anAnswerAfterTheEndFindsNobody) {
    moveTo("a.txt");
    press("return");
    end();
    workspace.answerAll(std::unexpected("late"));
}

TEST_F(DesktopScenario, terminalAndFileBrowserShowWhereTheKeyboardIs) {
    press("f9");
    app().settings().set(app::SettingKeys::terminalApp, "iterm");
    press("f9");
    press("cmd+shift+r");
    EXPECT_EQ(takeToast(), "Není co ukázat.") << "nothing but the way up is under the cursor";
    mark({"a.txt", "folder"});
    press("cmd+shift+r");
    EXPECT_THAT(workspace.takeAsked(),
                ElementsAre("terminal in " + temp.path("left"), "iterm in " + temp.path("left"),
                            "reveal " + left("folder") + " " + left("a.txt")));
    workspace.answerAll(std::unexpected("Terminál nenalezen."));
    EXPECT_EQ(toast(), "Terminál nenalezen.");
}

TEST_F(DesktopScenario, aSecondStartOpensTabsOnceNoDialogIsInTheWay) {
    press("tab");
    app().openPaths(left("folder"), std::nullopt);
    settle();
    EXPECT_EQ(app().activeSide(), PanelSide::left);
    EXPECT_THAT(tabPaths(PanelSide::left), ElementsAre(temp.path("left"), left("folder")));
    EXPECT_EQ(path(), left("folder"));

    temp.file("right/a.txt", "foreign");
    press("cmd+pageup");
    copyOverToTheOtherPanel();
    ASSERT_TRUE(clash());
    app().openPaths(std::nullopt, left("folder"));
    app().openPaths(std::nullopt, left("b.txt"));
    settle();
    EXPECT_THAT(tabPaths(PanelSide::right), ElementsAre(temp.path("right")));
    app().closeDialog();
    settleAll();
    EXPECT_EQ(app().activeSide(), PanelSide::right);
    EXPECT_EQ(path(), temp.path("left")) << "of a file, its folder is shown";
    EXPECT_EQ(underCursor(), "b.txt");
}

TEST_F(DesktopScenario, jobsKeepTheComputerAwakeAndSayWhenTheyAskOrTookLong) {
    temp.file("right/a.txt", "foreign");
    EXPECT_FALSE(workspace.isAwake);
    copyOverToTheOtherPanel();
    ASSERT_TRUE(clash());
    EXPECT_FALSE(workspace.isAwake) << "it may wait for the user for days";
    EXPECT_THAT(workspace.takeAsked(),
                ElementsAre("notify Kopírování „a.txt“: „a.txt“ už v cíli je. "
                            "Čeká na vaše rozhodnutí."));
    today.seconds += 10;
    app().answerConflict({ConflictChoice::rename, false});
    settleAll();
    EXPECT_THAT(workspace.takeAsked(), ElementsAre("notify Kopírování „a.txt“: Hotovo"));

    moveTo("b.txt");
    press("f5");
    app().confirmTransfer(dialog<app::TransferDialog>().target);
    settleAll();
    EXPECT_EQ(content("right/b.txt"), "bb");
    EXPECT_THAT(workspace.takeAsked(), IsEmpty()) << "a short one needs no word";
    EXPECT_FALSE(workspace.isAwake);
}

} // namespace fennik::test
