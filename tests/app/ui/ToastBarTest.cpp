#include "app/ui/ToastBar.h"
#include "app/ui/KeyButton.h"
#include "app/ui/Shadow.h"

#include <QAccessible>
#include <QApplication>
#include <QGraphicsEffect>
#include <QLineEdit>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

class AnimationStyle final : public QProxyStyle {
public:
    explicit AnimationStyle(int milliseconds)
        : QProxyStyle(QStringLiteral("Fusion")), milliseconds_(milliseconds) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        return hint == SH_Widget_Animation_Duration
                   ? milliseconds_
                   : QProxyStyle::styleHint(hint, option, widget, result);
    }

private:
    int milliseconds_;
};

class ToastBarTest : public testing::Test {
protected:
    ToastBarTest() {
        setAnimation(0);
        window.resize(900, 200);
        window.show();
        window.activateWindow();
        field.setFocus();
    }
    ~ToastBarTest() override { QApplication::setStyle(QStringLiteral("Fusion")); }

    static void setAnimation(int milliseconds) {
        QApplication::setStyle(new AnimationStyle(milliseconds));
    }
    void show(const ToastBar::Toast& toast) {
        bar.showToast(toast);
        bar.move(30, 30);
    }
    KeyButton& button(const char* name) { return *bar.findChild<KeyButton*>(name); }

    Theme theme{Appearance::light};
    Icons icons{theme};
    QWidget window;
    QLineEdit field{&window};
    ToastBar bar{theme, icons, &window};
};

} // namespace

TEST_F(ToastBarTest, isAsWideAsItsTextAndNoWiderThanTheLimit) {
    show({.text = "Není co vrátit."});
    const int narrow = bar.width();
    show({.text = "Přesunuto do Koše: 4 položky", .button = {"Vrátit", "Ctrl+Z", "undo-2"}});
    EXPECT_GT(bar.width(), narrow);
    EXPECT_TRUE(bar.rect().contains(button("toastButton").geometry()));
    show({.text = QString("dlouhá věta ").repeated(30) + "\nb", .button = {"Vrátit", {}, {}}});
    EXPECT_EQ(bar.size(), QSize(theme.px(560), theme.px(40)));
    EXPECT_LT(button("toastAllLines").geometry().right(), button("toastButton").x());
}

TEST_F(ToastBarTest, buttonsAskWithoutTakingTheKeyboard) {
    QSignalSpy clicked(&bar, &ToastBar::buttonClicked);
    QSignalSpy lines(&bar, &ToastBar::allLinesRequested);
    show({.text = "Není co vrátit."});
    EXPECT_FALSE(button("toastButton").isVisible());
    EXPECT_FALSE(button("toastAllLines").isVisible());
    show({.text = "první\ndruhá", .button = {"Vrátit", "Ctrl+Z", "undo-2"}});
    QTest::mouseClick(&button("toastButton"), Qt::LeftButton);
    QTest::mouseClick(&button("toastAllLines"), Qt::LeftButton);
    EXPECT_EQ(clicked.size(), 1);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_EQ(lines[0][0].toString(), "první\ndruhá");
    EXPECT_EQ(window.focusWidget(), &field);
}

TEST_F(ToastBarTest, screenReadersHearAnAlert) {
    show({.text = "<b>x</b>\ny"});
    auto* heard = QAccessible::queryAccessibleInterface(&bar);
    EXPECT_EQ(heard->role(), QAccessible::AlertMessage);
    EXPECT_EQ(heard->text(QAccessible::Name), "<b>x</b>\ny");
    EXPECT_FALSE(bar.toolTip().contains("<b>"));
}

TEST_F(ToastBarTest, fadesUnlessNothingMayMove) {
    auto* shadow = window.findChild<Shadow*>();
    show({.text = "a"});
    EXPECT_FALSE(bar.graphicsEffect()->isEnabled());
    EXPECT_TRUE(shadow->isVisible());
    bar.dismiss();
    EXPECT_FALSE(bar.isVisible());
    EXPECT_FALSE(shadow->isVisible());

    setAnimation(200);
    show({.text = "b"});
    EXPECT_TRUE(bar.isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !bar.graphicsEffect()->isEnabled(); }, 3000));
    bar.dismiss();
    EXPECT_TRUE(bar.isVisible());
    show({.text = "c"}); // comes in time to stay
    QTest::qWait(400);
    EXPECT_TRUE(bar.isVisible());
    bar.dismiss();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !bar.isVisible(); }, 3000));
}

TEST_F(ToastBarTest, theShadowLiesBelowAndLetsTheMouseThrough) {
    show({.text = "Ve schránce nejsou soubory."});
    const auto image = window.grab().toImage();
    const auto ground = image.pixelColor(600, 150);
    const auto below = image.pixelColor(bar.geometry().center().x(), bar.geometry().bottom() + 6);
    EXPECT_LT(below.lightness(), ground.lightness());
    EXPECT_EQ(image.pixelColor(bar.geometry().center() + QPoint(0, 15)), theme.tokens().raised);
    EXPECT_EQ(window.childAt(bar.geometry().bottomLeft() + QPoint(20, 6)), nullptr);
}

} // namespace fennik::test
