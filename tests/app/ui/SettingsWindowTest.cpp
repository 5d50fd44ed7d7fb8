#include "app/ui/settings/SettingsWindow.h"

#include "app/ui/dialogs/CheckBox.h"
#include "app/ui/dialogs/SegmentedControl.h"
#include "app/ui/settings/DropDown.h"
#include "tests/support/WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>
#include <memory>

namespace fennik::test {

namespace {

using namespace ui;
namespace Keys = app::SettingKeys;

class KnownEditors final : public app::TextEditors {
public:
    void find(std::function<void(std::vector<app::TextEditor>)> found) override {
        found({{"Psaní", "psani.desktop"}});
    }
};

class SettingsWindowTest : public WindowFixture {
protected:
    SettingsWindowTest() {
        app.settings().registerDefaults();
        window.show();
        settingsWindow = std::make_unique<SettingsWindow>(
            UiContext{app, shortcuts, theme, icons, &editors}, layout, &window);
        settingsWindow->open();
        EXPECT_TRUE(QTest::qWaitForWindowActive(settingsWindow.get()));
    }

    template <class T>
    T& part(const char* name) {
        return *settingsWindow->findChild<T*>(name);
    }
    static void press(int key) { QTest::keyClick(QApplication::focusWidget(), Qt::Key(key)); }

    KnownEditors editors;
    std::unique_ptr<SettingsWindow> settingsWindow; ///< begins when there are defaults
};

} // namespace

TEST_F(SettingsWindowTest, whatIsChosenIsStoredAndWhatIsChangedElsewhereIsShown) {
    auto& density = part<SegmentedControl>("density");
    EXPECT_EQ(density.chosen(), 1);
    density.choose(0);
    EXPECT_EQ(app.settings().get(Keys::density), "compact");
    app.settings().set(Keys::density, "comfortable");
    EXPECT_EQ(density.chosen(), 2);

    auto& hidden = part<CheckBox>("showHidden");
    app.perform(app::KAction::toggleHidden);
    EXPECT_TRUE(hidden.isChecked());
    hidden.click();
    EXPECT_FALSE(app.settings().get(Keys::showHidden));

    part<QAbstractButton>("operationsTab").click();
    EXPECT_EQ(settingsWindow->windowTitle(), "Nastavení – Operace");
    EXPECT_EQ(app.settings().get(Keys::settingsTab), "operations");
    app.settings().set(Keys::confirmTrash, false);
    EXPECT_FALSE(part<CheckBox>("confirmTrash").isChecked());
}

TEST_F(SettingsWindowTest, aSpeedIsOneOfThoseOfferedOrOnesOwn) {
    part<QAbstractButton>("operationsTab").click();
    auto& speed = part<QWidget>("throttleMBps");
    auto& list = *speed.findChild<DropDown*>();
    auto& field = *speed.findChild<QLineEdit*>("ownNumber");
    EXPECT_EQ(list.currentText(), "bez omezení");
    EXPECT_FALSE(field.isVisible());
    list.setFocus();
    press(Qt::Key_End); // of the user's own
    ASSERT_TRUE(field.isVisible());
    EXPECT_EQ(app.settings().get(Keys::throttleMBps), 0);
    field.selectAll();
    QTest::keyClicks(&field, "2,5x");
    EXPECT_EQ(app.settings().get(Keys::throttleMBps), 2.5);
    app.settings().set(Keys::throttleMBps, 25);
    EXPECT_EQ(list.currentText(), "25 MB/s");
    EXPECT_FALSE(field.isVisible());
}

TEST_F(SettingsWindowTest, everyWordTakesTheColoursOfAnotherTheme) {
    for (const auto* tab : {"operationsTab", "keysTab"})
        part<QAbstractButton>(tab).click();
    theme.setAppearance(Appearance::dark);
    for (const auto* label : settingsWindow->findChildren<QLabel*>())
        EXPECT_GT(label->palette().color(QPalette::WindowText).lightness(), 128)
            << label->text().toStdString();
}

TEST_F(SettingsWindowTest, anEditorIsTypedOrChosenAmongThoseInstalled) {
    auto& field = part<QLineEdit>("editorName");
    field.setFocus();
    QTest::keyClicks(&field, "vi");
    EXPECT_EQ(app.settings().get(Keys::editorApp), "vi");
    part<QAbstractButton>("chooseEditor").click();
    const auto choose = [this](int index) {
        settingsWindow->findChild<QMenu*>()->actions().at(index)->trigger();
    };
    choose(2); // behind the standard one and a line
    EXPECT_EQ(app.settings().get(Keys::editorApp), "psani.desktop");
    EXPECT_EQ(field.text(), "psani.desktop");
    choose(0);
    EXPECT_EQ(app.settings().get(Keys::editorApp), "");
}

} // namespace fennik::test
