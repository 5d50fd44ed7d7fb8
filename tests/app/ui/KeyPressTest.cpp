#include "app/ui/KeyPress.h"

#include <QKeyEvent>

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace fennik::test {

namespace {

/// A Czech keyboard as far as the tests need it.
class CzechLayout final : public app::KeyboardLayout {
public:
    std::optional<std::string> character(const app::PressedKey& key) override {
        switch (key.scanCode) {
        case 0:
            return std::nullopt;
        case 34:
            return "ú";
        case 60:
            return ".";
        default:
            return "";
        }
    }
};

class KeyPressTest : public testing::Test {
protected:
    /// How the combination of the press is displayed; empty for none.
    std::string press(int key, Qt::KeyboardModifiers modifiers, quint32 scanCode = 0) {
        const QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0);
        const auto combo = ui::KeyPress::combo(event, layout, [this](const KeyCombo& candidate) {
            return std::ranges::find(owned, candidate) != owned.end();
        });
        return combo ? combo->displayForm() : std::string();
    }

    CzechLayout layout;
    std::vector<KeyCombo> owned;
};

} // namespace

TEST_F(KeyPressTest, theLayoutNamesAKeyWhateverItsModifiersMakeOfIt) {
    EXPECT_EQ(press(Qt::Key_Colon, Qt::ControlModifier | Qt::ShiftModifier, 60), "⇧⌘.");
    EXPECT_EQ(press(Qt::Key_Slash, Qt::ControlModifier | Qt::ShiftModifier, 34), "⇧⌘Ú");
    EXPECT_EQ(press(Qt::Key_Plus, Qt::AltModifier, 10), "⌥1");
    EXPECT_EQ(press(Qt::Key_Eacute, Qt::MetaModifier, 19), "⌃0");
}

TEST_F(KeyPressTest, withoutALayoutTheToolkitNamesTheKey) {
    EXPECT_EQ(press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier), "⇧⌘Z");
    EXPECT_EQ(press(Qt::Key_7, Qt::AltModifier), "⌥7");
    EXPECT_EQ(press(0x10C, Qt::NoModifier), "Č");
    EXPECT_EQ(press(Qt::Key_F15, Qt::NoModifier), "F15");
    EXPECT_EQ(press(Qt::Key_F16, Qt::NoModifier), "");
    EXPECT_EQ(press(Qt::Key_Control, Qt::ControlModifier), "");
    EXPECT_EQ(press(Qt::Key_Dead_Acute, Qt::NoModifier), "");
}

TEST_F(KeyPressTest, shiftIsHeldWhereTabGoesBack) {
    EXPECT_EQ(press(Qt::Key_Backtab, Qt::ControlModifier), "⇧⌘⇥");
}

TEST_F(KeyPressTest, theKeypadHasKeysOfItsOwn) {
    EXPECT_EQ(press(Qt::Key_Plus, Qt::KeypadModifier, 86), "Num+");
    EXPECT_EQ(press(Qt::Key_Plus, Qt::NoModifier), "+");
    EXPECT_EQ(press(Qt::Key_Comma, Qt::KeypadModifier, 91), ",");
    EXPECT_EQ(press(Qt::Key_Insert, Qt::KeypadModifier, 90), "Insert");
    EXPECT_EQ(press(Qt::Key_Enter, Qt::KeypadModifier, 104), "⌅");
}

TEST_F(KeyPressTest, ctrlCountsAsControlOnlyWhereThatAloneIsOwned) {
    EXPECT_EQ(press(Qt::Key_R, Qt::ControlModifier), "⌘R");
    owned.push_back(KeyCombo::parse("ctrl+r"));
    EXPECT_EQ(press(Qt::Key_R, Qt::ControlModifier), "⌃R");
    EXPECT_EQ(press(Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier), "⇧⌘R");
    owned.push_back(KeyCombo::parse("cmd+r"));
    EXPECT_EQ(press(Qt::Key_R, Qt::ControlModifier), "⌘R");

    owned = {KeyCombo::parse("cmd+d"), KeyCombo::parse("ctrl+e")};
    EXPECT_EQ(press(Qt::Key_D, Qt::MetaModifier), "⌃D");
    EXPECT_EQ(press(Qt::Key_E, Qt::ControlModifier | Qt::MetaModifier), "⌃⌘E");
}

} // namespace fennik::test
