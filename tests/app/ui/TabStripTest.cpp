#include "app/ui/TabStrip.h"
#include "app/ui/TabButton.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>

namespace fennik::test {

namespace {

using namespace ui;

/// A strip that obeys, as the window makes it.
class TabStripTest : public testing::Test {
protected:
    TabStripTest() {
        strip.resize(700, 32);
        QObject::connect(&strip, &TabStrip::selected, [this](int index) { show(index); });
        QObject::connect(&strip, &TabStrip::closeRequested, [this](int index) {
            titles.removeAt(index);
            show(std::min(active, int(titles.size()) - 1));
        });
        QObject::connect(&strip, &TabStrip::moved, [this](int from, int to) {
            titles.move(from, to);
            show(to);
        });
        show(0);
        strip.show();
    }

    void show(int index) {
        active = index;
        std::vector<TabStrip::Tab> tabs;
        for (const auto& title : titles)
            tabs.push_back({title, QStringLiteral("/home/jana/") + title});
        strip.setTabs(tabs, index);
    }
    TabButton& tab(const QString& title) {
        const auto tabs = strip.findChildren<TabButton*>();
        return **std::ranges::find_if(
            tabs, [&](auto* tab) { return tab->title() == title && !tab->isHidden(); });
    }
    void turnWheel(int angle) {
        QWheelEvent event({10, 10}, strip.mapToGlobal(QPointF(10, 10)), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&strip, &event);
    }
    /// A line in the accent colour on top of the tab.
    bool isMarked(const QString& title) {
        auto& shown = tab(title);
        return shown.grab().toImage().pixelColor(shown.width() / 2, 0) == theme.tokens().accent;
    }

    Theme theme{Appearance::light};
    Icons icons{theme};
    TabStrip strip{theme, icons, nullptr};
    QStringList titles{"Smlouvy 2026", "Stažené", "fennik"};
    int active = 0;
};

} // namespace

TEST_F(TabStripTest, theMouseSelectsClosesAndReorders) {
    QTest::mouseClick(&tab("Stažené"), Qt::LeftButton);
    EXPECT_EQ(active, 1);
    QTest::mouseClick(&tab("Stažené"), Qt::LeftButton, {}, tab("Stažené").closeArea().center());
    EXPECT_EQ(titles, (QStringList{"Smlouvy 2026", "fennik"}));
    titles = {"a", "a much longer title", "c"};
    show(0);
    auto& first = tab("a");
    const int y = 10;
    const int beyond = tab("c").geometry().center().x() + 4 - first.x();
    QTest::mousePress(&first, Qt::LeftButton, {}, {10, y});
    QTest::mouseMove(&first, {30, y});
    EXPECT_EQ(titles[0], "a");
    QTest::mouseMove(&first, {beyond, y});
    QTest::mouseRelease(&first, Qt::LeftButton, {}, {beyond, y});
    EXPECT_EQ(titles, (QStringList{"a much longer title", "c", "a"}));
    EXPECT_EQ(active, 2);
    QTest::mouseClick(&tab("c"), Qt::MiddleButton);
    EXPECT_EQ(titles, (QStringList{"a much longer title", "a"}));

    const QSignalSpy added(&strip, &TabStrip::newTabRequested);
    QTest::mouseClick(strip.findChild<QAbstractButton*>("newTabButton"), Qt::LeftButton);
    EXPECT_EQ(added.size(), 1);
}

TEST_F(TabStripTest, theOnlyTabCannotBeClosed) {
    titles = {"jana"};
    show(0);
    EXPECT_TRUE(tab("jana").closeArea().isNull());
    QTest::mouseClick(&tab("jana"), Qt::MiddleButton);
    EXPECT_EQ(titles.size(), 1);
}

TEST_F(TabStripTest, theWheelChangesTabsAndStopsAtTheEnds) {
    turnWheel(120);
    EXPECT_EQ(active, 0);
    turnWheel(-60);
    EXPECT_EQ(active, 0);
    turnWheel(-60);
    EXPECT_EQ(active, 1);
    turnWheel(-120 * 5);
    EXPECT_EQ(active, 2);
}

TEST_F(TabStripTest, tooManyTabsShrinkAndThenScroll) {
    titles.clear();
    for (int i = 0; i < 30; ++i)
        titles << QStringLiteral("Smlouvy a dodatky %1").arg(i);
    show(25);
    const auto* list = strip.findChild<QWidget*>("tabList");
    const auto* add = strip.findChild<QAbstractButton*>("newTabButton");
    const auto isInView = [&](int index) {
        return list->rect().contains(tab(titles[index]).geometry());
    };
    EXPECT_EQ(tab(titles[25]).width(), theme.px(90));
    EXPECT_TRUE(isInView(25));
    EXPECT_FALSE(isInView(0));
    EXPECT_TRUE(strip.rect().contains(add->geometry()));
    show(0);
    EXPECT_TRUE(isInView(0));
    titles = titles.mid(0, 5);
    show(4);
    EXPECT_GT(tab(titles[4]).width(), theme.px(90));
    EXPECT_TRUE(isInView(0) && isInView(4));
}

TEST_F(TabStripTest, onlyTheActivePanelsActiveTabIsMarked) {
    EXPECT_FALSE(isMarked("Smlouvy 2026"));
    strip.setActivePanel(true);
    EXPECT_TRUE(isMarked("Smlouvy 2026"));
    EXPECT_FALSE(isMarked("Stažené"));
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(isMarked("Smlouvy 2026"));
}

TEST_F(TabStripTest, screenReadersHearAListOfTabs) {
    auto* list = QAccessible::queryAccessibleInterface(strip.findChild<QWidget*>("tabList"));
    EXPECT_EQ(list->role(), QAccessible::PageTabList);
    ASSERT_EQ(list->childCount(), 3);
    QTest::mouseClick(&tab("Stažené"), Qt::LeftButton);
    auto* second = list->child(1);
    EXPECT_EQ(second->role(), QAccessible::PageTab);
    EXPECT_EQ(second->text(QAccessible::Name), "Stažené");
    EXPECT_EQ(second->text(QAccessible::Description), "/home/jana/Stažené");
    EXPECT_TRUE(second->state().selected);
    EXPECT_FALSE(list->child(0)->state().selected);
    list->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(active, 2);
    for (const auto* widget : strip.findChildren<QWidget*>())
        EXPECT_EQ(widget->focusPolicy(), Qt::NoFocus);
}

} // namespace fennik::test
