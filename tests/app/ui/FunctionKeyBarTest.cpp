#include "app/ui/FunctionKeyBar.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace fennik::test {

namespace {

using namespace ui;
using Cell = FunctionKeyBar::Cell;

class FunctionKeyBarTest : public testing::Test {
protected:
    FunctionKeyBarTest() {
        window.resize(1440, 60);
        bar.resize(1440, 34);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field.setFocus();
    }

    std::vector<Cell> cells(Qt::KeyboardModifiers held) const {
        std::vector<Cell> result;
        for (int number = 3; number <= 9; ++number)
            result.push_back({.key = QStringLiteral("F%1").arg(number)});
        if (held == Qt::ShiftModifier) {
            result[3] = {.key = "Shift+F6", .icon = "text-cursor-input", .title = "Přejmenovat"};
            return result;
        }
        if (held != Qt::NoModifier)
            return result;
        result[2] = {.key = "F5", .icon = "copy", .title = copyTitle};
        result[4] = {.key = "F7",
                     .icon = "folder-plus",
                     .title = "Nová složka",
                     .availability = FunctionKeyBar::Availability::unavailable,
                     .toolTip = "V archivu <b> nejde nic měnit."};
        result.push_back({.key = "Alt+F5", .icon = "archive", .title = "Zabalit"});
        result.push_back({.key = "Alt+F9", .icon = "package-open", .title = "Rozbalit"});
        return result;
    }
    std::vector<QAbstractButton*> shown() const {
        std::vector<QAbstractButton*> result;
        for (auto* cell : bar.findChildren<QAbstractButton*>()) {
            if (cell->isVisible())
                result.push_back(cell);
        }
        return result;
    }
    /// The toolkit's helper would add presses of the modifiers.
    void send(QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(type, key, modifiers);
        QApplication::sendEvent(&field, &event);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        send(QEvent::KeyPress, key, modifiers);
    }
    void release(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        send(QEvent::KeyRelease, key, modifiers);
    }
    bool waitFor(Qt::KeyboardModifiers layer) {
        return QTest::qWaitFor([&] { return bar.layer() == layer; }, 3000);
    }

    Theme theme{Appearance::light};
    Icons icons{theme};
    QString copyTitle{"Kopírovat"};
    QWidget window;
    QLineEdit field{&window};
    FunctionKeyBar bar{[this](Qt::KeyboardModifiers held) { return cells(held); }, theme, icons,
                       &window};
};

} // namespace

TEST_F(FunctionKeyBarTest, clicksNameTheCellAndItsLayer) {
    QSignalSpy activated(&bar, &FunctionKeyBar::activated);
    const auto plain = shown();
    ASSERT_EQ(plain.size(), 9U);
    QTest::mouseClick(plain[2], Qt::LeftButton);
    QTest::mouseClick(plain[0], Qt::LeftButton); // does nothing
    QTest::mouseClick(plain[4], Qt::LeftButton); // cannot now
    ASSERT_EQ(activated.size(), 1);
    EXPECT_EQ(activated[0][0].toInt(), 2);
    EXPECT_FALSE(plain[4]->toolTip().contains("<b>"));
    EXPECT_EQ(plain[4]->accessibleName(), "Nová složka");

    press(Qt::Key_Shift, Qt::NoModifier);
    ASSERT_TRUE(waitFor(Qt::ShiftModifier));
    ASSERT_EQ(shown().size(), 7U);
    QTest::mouseClick(shown()[3], Qt::LeftButton);
    ASSERT_EQ(activated.size(), 2);
    EXPECT_EQ(activated[1][1].value<Qt::KeyboardModifiers>(), Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &field);
    release(Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_EQ(bar.layer(), Qt::NoModifier);
    EXPECT_EQ(shown().size(), 9U);
}

TEST_F(FunctionKeyBarTest, aShortPressShowsNothing) {
    press(Qt::Key_Control, Qt::ControlModifier); // as some systems report it
    press(Qt::Key_C, Qt::ControlModifier);
    QTest::qWait(40);
    EXPECT_EQ(bar.layer(), Qt::NoModifier);
    release(Qt::Key_C, Qt::ControlModifier);
    release(Qt::Key_Control, Qt::NoModifier);
    QTest::qWait(250);
    EXPECT_EQ(bar.layer(), Qt::NoModifier);

    press(Qt::Key_Control, Qt::NoModifier);
    press(Qt::Key_Alt, Qt::ControlModifier);
    EXPECT_TRUE(waitFor(Qt::ControlModifier | Qt::AltModifier));
    release(Qt::Key_Control, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(waitFor(Qt::AltModifier));
    release(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_EQ(bar.layer(), Qt::NoModifier);
}

TEST_F(FunctionKeyBarTest, forgetsModifiersWhenTheWindowIsLeft) {
    press(Qt::Key_Alt, Qt::NoModifier);
    ASSERT_TRUE(waitFor(Qt::AltModifier));
    QEvent left(QEvent::WindowDeactivate);
    QApplication::sendEvent(&window, &left);
    EXPECT_EQ(bar.layer(), Qt::NoModifier);
}

TEST_F(FunctionKeyBarTest, narrowBarsLoseIconsAndThenTheLastCells) {
    const auto inkWidth = [this](int width) {
        bar.resize(width, 34);
        const auto image = shown()[2]->grab().toImage();
        int first = image.width();
        int last = 0;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 8; y < 26; ++y) {
                if (image.pixelColor(x, y) != image.pixelColor(0, 0)) {
                    first = std::min(first, x);
                    last = x;
                }
            }
        }
        return last - first;
    };
    EXPECT_GT(inkWidth(1150), inkWidth(1149) + 16);
    EXPECT_EQ(shown().size(), 9U);
    bar.resize(979, 34);
    EXPECT_EQ(shown().size(), 7U);
    bar.resize(1440, 34);
    EXPECT_EQ(shown().size(), 9U);
    EXPECT_EQ(shown().back()->geometry().right(), 1439);
}

TEST_F(FunctionKeyBarTest, followsTheCommandsThatKeysHaveNow) {
    copyTitle = QStringLiteral("Duplikovat");
    bar.refresh();
    EXPECT_EQ(shown()[2]->accessibleName(), "Duplikovat");
}

TEST_F(FunctionKeyBarTest, theQueueTakesRoomAtTheEndOnlyWhileThereIsSomethingToSay) {
    using Brief = JobTexts::Brief;
    auto* pill = bar.findChild<QAbstractButton*>("queuePill");
    EXPECT_FALSE(pill->isVisible());
    bar.setQueue(Brief{"43 % · 1 z 3", 0.43, Brief::Tone::works}, "Fronta operací (Ctrl+J)");
    ASSERT_TRUE(pill->isVisible());
    EXPECT_LT(shown().back()->geometry().right(), pill->x());
    EXPECT_LT(pill->geometry().right(), bar.width());
    const auto place = pill->geometry();
    bar.setQueue(Brief{"9 % · 1 z 3", 0.09, Brief::Tone::works}, {});
    EXPECT_EQ(pill->geometry(), place); // nothing jumps
    bar.setQueue(Brief{"Čeká na vaše rozhodnutí", 0.43, Brief::Tone::asks}, {});
    EXPECT_LT(pill->x(), place.x());
    EXPECT_EQ(pill->accessibleName(), "Fronta operací, Čeká na vaše rozhodnutí");
    QSignalSpy clicked(&bar, &FunctionKeyBar::queueClicked);
    QTest::mouseClick(pill, Qt::LeftButton);
    EXPECT_EQ(clicked.size(), 1);
    EXPECT_EQ(QApplication::focusWidget(), &field);
    bar.setQueue({}, {});
    EXPECT_EQ(shown().back()->geometry().right(), 1439);
}

} // namespace fennik::test
