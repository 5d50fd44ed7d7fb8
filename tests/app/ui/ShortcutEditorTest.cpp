#include "app/ui/dialogs/DialogHost.h"
#include "app/ui/settings/SettingsWindow.h"
#include "app/ui/settings/ShortcutChip.h"
#include "app/ui/settings/ShortcutRow.h"
#include "tests/support/WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using namespace ui;
using app::KAction;
using testing::ElementsAre;
using testing::IsEmpty;

class ShortcutEditorTest : public WindowFixture {
protected:
    ShortcutEditorTest() {
        window.show();
        app.settings().set(app::SettingKeys::settingsTab, "keys");
        open(shortcuts);
    }

    void open(app::ShortcutStore& edited) {
        editor =
            std::make_unique<SettingsWindow>(UiContext{app, edited, theme, icons}, layout, &window);
        editor->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(editor.get()));
    }
    ShortcutRow& row(KAction action) const {
        const auto name = QString::fromUtf8(app::KActions::identifier(action).data()) + "Row";
        return *editor->findChild<ShortcutRow*>(name);
    }
    template <class T>
    T& part(const char* name) const {
        return *editor->findChild<T*>(name);
    }
    std::vector<std::string> legends(KAction action) const {
        std::vector<std::string> result;
        for (const auto* chip : row(action).findChildren<ShortcutChip*>())
            if (!chip->isHidden())
                result.push_back(chip->text().toStdString());
        std::ranges::sort(result);
        return result;
    }
    std::vector<std::string> combos(KAction action) const {
        std::vector<std::string> result;
        for (const auto& combo : shortcuts.map().combos(app::KActions::identifier(action)))
            result.push_back(combo.displayForm());
        return result;
    }
    std::vector<std::string> shownRows() const {
        std::vector<std::string> titles;
        for (const auto action : app::KActions::all())
            if (row(action).isVisible())
                titles.emplace_back(app::KActions::identifier(action));
        return titles;
    }
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
    }
    static std::string focusName() {
        const auto* focus = QApplication::focusWidget();
        return focus == nullptr ? "" : focus->objectName().toStdString();
    }
    void record(KAction action) const {
        row(action).setFocus();
        press(Qt::Key_Return);
        EXPECT_EQ(focusName(), "keyRecorder");
    }
    /// What stands below the row; empty when nothing does.
    std::string note(KAction action) const {
        const auto* note = row(action).findChild<QWidget*>("shortcutNote");
        return note->isVisible() ? note->accessibleName().toStdString() : "";
    }

    std::unique_ptr<SettingsWindow> editor;
};

} // namespace

TEST_F(ShortcutEditorTest, aFreeCombinationIsAddedBehindTheOthers) {
    record(KAction::copy);
    press(Qt::Key_J, Qt::ControlModifier);
    EXPECT_THAT(combos(KAction::copy), ElementsAre("F5", "⌘J"));
    EXPECT_THAT(legends(KAction::copy), ElementsAre("Ctrl+J", "F5"));
    EXPECT_EQ(focusName(), "copyRow");
    EXPECT_EQ(row(KAction::copy).accessibleName(),
              "Kopírovat do druhého panelu, F5, Ctrl+J, změněno");
}

TEST_F(ShortcutEditorTest, aCombinationOfAnotherActionMovesOnlyWhenThatIsConfirmed) {
    record(KAction::copy);
    press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(note(KAction::copy), "Ctrl+Alt+C už má akce „Kopírovat cestu“. Přeřadit ji sem?");
    press(Qt::Key_Escape);
    EXPECT_EQ(note(KAction::copy), "");
    EXPECT_THAT(combos(KAction::copyPath), ElementsAre("⌥⌘C"));
    EXPECT_TRUE(editor->isVisible());

    record(KAction::copy);
    press(Qt::Key_C, Qt::ControlModifier | Qt::AltModifier);
    press(Qt::Key_Return);
    EXPECT_THAT(combos(KAction::copy), ElementsAre("F5", "⌥⌘C"));
    EXPECT_THAT(combos(KAction::copyPath), IsEmpty());
    EXPECT_EQ(row(KAction::copyPath).accessibleName().toStdString(),
              "Kopírovat cestu, bez zkratky, změněno");
    EXPECT_EQ(focusName(), "copyRow");
}

TEST_F(ShortcutEditorTest, aCombinationOfTheSystemIsRefusedAndTheNextOneAwaited) {
    record(KAction::copy);
    press(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(note(KAction::copy), "Ctrl+Q patří systému: Ukončit appku");
    press(Qt::Key_F11);
    EXPECT_EQ(note(KAction::copy), "");
    EXPECT_THAT(combos(KAction::copy), ElementsAre("F5", "F11"));
}

TEST_F(ShortcutEditorTest, aCombinationThatTheActionHasChangesNothing) {
    const auto before = shortcuts.map();
    record(KAction::copy);
    press(Qt::Key_F5);
    EXPECT_EQ(shortcuts.map(), before);
    EXPECT_EQ(focusName(), "copyRow");
}

TEST_F(ShortcutEditorTest, whileRecordingNoKeyDoesAnythingElse) {
    // The keys of the window, of its focus and of the menus.
    for (const auto& [key, modifiers] :
         std::vector<std::pair<int, Qt::KeyboardModifiers>>{{Qt::Key_W, Qt::ControlModifier},
                                                            {Qt::Key_Tab, Qt::NoModifier},
                                                            {Qt::Key_Backtab, Qt::ShiftModifier},
                                                            {Qt::Key_Return, Qt::NoModifier},
                                                            {Qt::Key_Tab, Qt::ControlModifier}}) {
        record(KAction::operations);
        press(key, modifiers);
        EXPECT_NE(note(KAction::operations), "") << key;
        press(Qt::Key_Escape);
        EXPECT_TRUE(editor->isVisible());
    }
    record(KAction::operations);
    press(Qt::Key_F10);
    EXPECT_THAT(combos(KAction::operations), ElementsAre("⌥⌘P", "F10"));
    record(KAction::operations);
    press(Qt::Key_Escape);
    EXPECT_EQ(focusName(), "operationsRow");
    EXPECT_EQ(app.panel(app::PanelSide::left).tabs().size(), 1U);
}

TEST_F(ShortcutEditorTest, ctrlStandsForControlWhereAnActionHasThatByDefault) {
    record(KAction::refresh);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_THAT(combos(KAction::refresh), ElementsAre("⌃R"));
    press(Qt::Key_Backspace);
    EXPECT_THAT(combos(KAction::refresh), IsEmpty());
    record(KAction::refresh);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_THAT(combos(KAction::refresh), ElementsAre("⌃R"));
}

TEST_F(ShortcutEditorTest, chipsAreChosenMovedAndRemovedByKeys) {
    row(KAction::quickLook).setFocus();
    press(Qt::Key_Right);
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_THAT(combos(KAction::quickLook), ElementsAre("F3", "Mezerník"));
    press(Qt::Key_Left);
    press(Qt::Key_Delete);
    EXPECT_THAT(combos(KAction::quickLook), ElementsAre("Mezerník"));
    press(Qt::Key_Backspace);
    EXPECT_THAT(combos(KAction::quickLook), IsEmpty());
    EXPECT_EQ(focusName(), "quickLookRow");
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_THAT(combos(KAction::quickLook), ElementsAre("Mezerník", "F3"));
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "infoRow");
    press(Qt::Key_Escape);
    EXPECT_FALSE(editor->isVisible());
}

TEST_F(ShortcutEditorTest, aDragGivesAChipAnotherPlace) {
    auto& dragged = *row(KAction::quickLook).findChildren<ShortcutChip*>().front();
    QTest::mousePress(&dragged, Qt::LeftButton);
    const auto beside = QPoint(dragged.width() + 30, dragged.height() / 2);
    QTest::mouseMove(&dragged, beside / 2);
    QTest::mouseMove(&dragged, beside);
    QTest::mouseRelease(&dragged, Qt::LeftButton, Qt::NoModifier, beside);
    EXPECT_THAT(combos(KAction::quickLook), ElementsAre("F3", "Mezerník"));
}

TEST_F(ShortcutEditorTest, collisionsAreShownUntilTheyAreResolved) {
    app::ShortcutStore colliding(
        app::KActions::defaultMapOffTheMac(),
        [] {
            auto map = app::KActions::defaultMapOffTheMac();
            map.bindings["unpack"] = {KeyCombo::parse("f7")};
            return map.toJson();
        },
        [](const std::string&) {});
    EXPECT_FALSE(part<QWidget>("collisionStrip").isVisible());
    open(colliding);
    auto& strip = part<QAbstractButton>("collisionStrip");
    ASSERT_TRUE(strip.isVisible());
    EXPECT_EQ(strip.accessibleName(),
              "Některé zkratky mají víc akcí – použije se jen jedna. Opravte je níže.");
    strip.click();
    EXPECT_EQ(focusName(), "newFolderRow");
    press(Qt::Key_Return);
    press(Qt::Key_F7);
    EXPECT_EQ(note(KAction::newFolder), "F7 už má akce „Rozbalit…“. Přeřadit ji sem?");
    press(Qt::Key_Return);
    EXPECT_FALSE(strip.isVisible());
    EXPECT_THAT(colliding.actions(KeyCombo::parse("f7")), ElementsAre(KAction::newFolder));
    editor.reset(); // before its store
}

TEST_F(ShortcutEditorTest, commandsAreFoundByWordsByLegendsAndByPressingTheKey) {
    auto& search = part<QLineEdit>("shortcutSearch");
    search.setFocus();
    QTest::keyClicks(&search, "zalozka");
    EXPECT_THAT(shownRows(), ElementsAre("newTab", "nextTab", "prevTab"));
    search.selectAll();
    QTest::keyClicks(&search, "shift+f6");
    EXPECT_THAT(shownRows(), ElementsAre("rename"));
    search.selectAll();
    QTest::keyClicks(&search, "xyz");
    EXPECT_THAT(shownRows(), IsEmpty());
    EXPECT_TRUE(part<QLabel>("nothingFound").isVisible());

    part<QAbstractButton>("findByKey").click();
    EXPECT_EQ(focusName(), "findRecorder");
    press(Qt::Key_F6);
    EXPECT_THAT(shownRows(), ElementsAre("move"));
    EXPECT_EQ(focusName(), "shortcutSearch");
    press(Qt::Key_Down);
    EXPECT_EQ(focusName(), "moveRow");
    press(Qt::Key_Escape); // ends the search, not the window
    EXPECT_EQ(shownRows().size(), app::KActions::count);
    EXPECT_TRUE(editor->isVisible());
}

TEST_F(ShortcutEditorTest, allShortcutsReturnToTheDefaultsOnlyWhenConfirmed) {
    auto& button = part<QAbstractButton>("resetAllShortcuts");
    EXPECT_FALSE(button.isEnabled());
    shortcuts.remove(KeyCombo::parse("f5"), KAction::copy);
    EXPECT_EQ(part<QLabel>("shortcutCount").text(), "52 příkazů · 1 změněný");
    for (const int answer : {Qt::Key_Escape, Qt::Key_Return}) {
        EXPECT_THAT(combos(KAction::copy), IsEmpty());
        button.click();
        press(answer);
    }
    EXPECT_THAT(combos(KAction::copy), ElementsAre("F5"));
    EXPECT_TRUE(editor->isVisible());
}

} // namespace fennik::test
