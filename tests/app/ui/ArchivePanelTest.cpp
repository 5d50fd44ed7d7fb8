#include "app/ui/ArchiveBadge.h"
#include "app/ui/Crumb.h"
#include "app/ui/FileDrag.h"
#include "app/ui/PanelMessage.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "app/ui/PathBar.h"
#include "app/ui/RunLabel.h"
#include "app/ui/StatusLine.h"
#include "app/ui/TabButton.h"
#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/SourceList.h"
#include "tests/support/WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>

namespace fennik::test {

namespace {

using namespace ui;
using app::PanelSide;

/// The left panel shows a folder with an archive, in which another one lies.
class ArchivePanelTest : public WindowFixture {
protected:
    ArchivePanelTest() {
        temp.folder("left");
        temp.file("left/web.zip", "packed");
        temp.folder("right");
        archives.content["web.zip"] = {
            ManualEntry::file("css/deep/styl.css", "body {}"), ManualEntry::folder("empty"),
            ManualEntry::file("inner.zip", "packed"), ManualEntry::link("index.html", "úvod.html"),
            ManualEntry::file("úvod.html", "<html>")};
        archives.content["inner.zip"] = {ManualEntry::file("a/b.txt", "b")};
        window.show();
        app.start(temp.path("left"), temp.path("right"));
        settleAll();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void settleAll() {
        settle();
        QApplication::processEvents();
        settle();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
        settleAll();
    }
    void open(std::string_view name) {
        const auto row = panel().items().rowOf(name);
        ASSERT_TRUE(row) << name;
        panel().setCursor(std::ptrdiff_t(*row));
        press(Qt::Key_Return);
    }
    app::PanelModel& panel() { return app.panel(PanelSide::left); }
    PanelView& view() { return window.view(PanelSide::left); }
    QString status() {
        QStringList parts;
        for (const auto* label : view().findChild<StatusLine*>()->findChildren<RunLabel*>())
            parts << label->text();
        return parts.join(QLatin1Char('|'));
    }
    /// Those on the way that are in view.
    std::vector<Crumb*> crumbs() {
        std::vector<Crumb*> shown;
        for (auto* crumb : view().pathBar().findChildren<Crumb*>()) {
            if (crumb->isVisible() && crumb->title() != "…")
                shown.push_back(crumb);
        }
        return shown;
    }
    void clickCrumb(const QString& title) {
        for (auto* crumb : crumbs()) {
            if (crumb->title() == title) {
                QTest::mouseClick(crumb, Qt::LeftButton);
                settleAll();
                return;
            }
        }
        FAIL() << title.toStdString();
    }
    std::string cursorName() { return std::string(panel().cursorItem()->name); }
    QAbstractButton& key(const QString& title) {
        for (auto* cell : window.findChildren<QAbstractButton*>("functionKeyCell")) {
            if (cell->accessibleName() == title)
                return *cell;
        }
        ADD_FAILURE() << title.toStdString();
        return *window.findChild<QAbstractButton*>();
    }
};

} // namespace

TEST_F(ArchivePanelTest, theWindowSaysWhereInWhichArchiveItIs) {
    open("web.zip");
    auto* badge = view().findChild<ArchiveBadge*>();
    EXPECT_EQ(window.windowTitle(), "web.zip – Fennik");
    EXPECT_EQ(view().findChild<TabButton*>()->accessibleName(), "web.zip");
    EXPECT_EQ(view().table().accessibleName(), "Levý panel, web.zip, 5 položek");
    EXPECT_EQ(badge->text(), "ZIP · jen pro čtení");
    EXPECT_TRUE(badge->isVisible());
    EXPECT_TRUE(status().endsWith("3 soubory · 19\u00A0B")) << status().toStdString();
    panel().setCursor(std::ptrdiff_t(*panel().items().rowOf("index.html")));
    EXPECT_TRUE(status().contains("→ úvod.html"));

    open("css");
    EXPECT_EQ(window.windowTitle(), "web.zip – Fennik");
    EXPECT_EQ(view().table().accessibleName(), "Levý panel, web.zip › css, 1 položka");
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_EQ(window.windowTitle(), "left – Fennik");
    EXPECT_EQ(view().findChild<TabButton*>()->accessibleName(), "left");
    EXPECT_FALSE(badge->isVisible());
    EXPECT_TRUE(status().contains("Volno "));
}

TEST_F(ArchivePanelTest, crumbsLeadThroughTheArchiveAndOutOfIt) {
    open("web.zip");
    open("css");
    open("deep");
    EXPECT_EQ(crumbs().back()->accessibleDescription().toStdString(),
              temp.path("left/web.zip/css/deep"));
    clickCrumb("css");
    EXPECT_EQ(panel().archive()->inner, "css");
    clickCrumb("web.zip");
    EXPECT_EQ(panel().archive()->inner, "");
    open("css");
    clickCrumb("left");
    EXPECT_FALSE(panel().archive());
    EXPECT_EQ(cursorName(), "web.zip");
}

TEST_F(ArchivePanelTest, crumbsLeadFromAnArchiveInsideAnotherToTheOuterOne) {
    open("web.zip");
    open("inner.zip");
    open("a");
    EXPECT_EQ(window.windowTitle(), "inner.zip – Fennik");
    EXPECT_EQ(crumbs().back()->accessibleDescription().toStdString(),
              temp.path("left/web.zip/inner.zip/a"));
    clickCrumb("inner.zip");
    EXPECT_EQ(panel().archive()->inner, "");
    clickCrumb("web.zip");
    EXPECT_EQ(window.windowTitle(), "web.zip – Fennik");
    EXPECT_EQ(view().table().accessibleName(), "Levý panel, web.zip, 5 položek");
}

TEST_F(ArchivePanelTest, aTabInTheBackgroundKeepsTheNameOfItsArchive) {
    open("web.zip");
    panel().openTab(temp.path("right"));
    settleAll();
    std::vector<QString> titles;
    for (const auto* tab : view().findChildren<TabButton*>())
        titles.push_back(tab->accessibleName());
    EXPECT_EQ(titles, (std::vector<QString>{"web.zip", "right"}));
}

TEST_F(ArchivePanelTest, keysThatCanDoNothingThereAreDimAndSayWhy) {
    EXPECT_TRUE(key("Přesunout").isEnabled());
    open("web.zip");
    for (const auto* title : {"Upravit", "Přesunout", "Nová složka", "Do Koše", "Zabalit"}) {
        EXPECT_FALSE(key(title).isEnabled()) << title;
        EXPECT_TRUE(key(title).toolTip().contains("Archiv je jen pro čtení.")) << title;
    }
    EXPECT_TRUE(key("Kopírovat").isEnabled());
    EXPECT_TRUE(key("Rozbalit").isEnabled());
    press(Qt::Key_Tab);
    EXPECT_TRUE(key("Přesunout").isEnabled());
    press(Qt::Key_Tab);
    EXPECT_FALSE(key("Přesunout").isEnabled());
    press(Qt::Key_Backspace);
    EXPECT_TRUE(key("Přesunout").isEnabled());
}

TEST_F(ArchivePanelTest, nothingIsDroppedIntoAnArchiveNorDraggedOutOfIt) {
    temp.file("right/a.txt");
    open("web.zip");
    const auto carried = FileDrag::data({FileUrl(temp.path("right/a.txt"))});
    const auto isAllowed = [&](QWidget& widget, QPoint point) {
        QDragEnterEvent entering(point, Qt::CopyAction, carried.get(), Qt::LeftButton,
                                 Qt::NoModifier);
        QApplication::sendEvent(&widget, &entering);
        QDragMoveEvent event(point, Qt::CopyAction, carried.get(), Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted();
    };
    auto& table = view().table();
    for (const int row : {0, 1, 4})
        EXPECT_FALSE(isAllowed(*table.viewport(), {120, table.rowViewportPosition(row) + 10}));
    EXPECT_TRUE(status().contains("Archiv je jen pro čtení."));
    auto& bar = view().pathBar();
    const auto way = crumbs();
    EXPECT_FALSE(isAllowed(bar, way.back()->geometry().center()));
    EXPECT_TRUE(isAllowed(bar, way[way.size() - 2]->geometry().center()));

    int drags = 0;
    QObject::connect(&table, &PanelTable::dragStarted, &window, [&] { ++drags; });
    QObject::disconnect(&table, &PanelTable::dragStarted, &view(), nullptr);
    const QPoint from(120, table.rowViewportPosition(4) + 10);
    QTest::mousePress(table.viewport(), Qt::LeftButton, {}, from);
    QMouseEvent moved(QEvent::MouseMove, from + QPoint(30, 0),
                      table.viewport()->mapToGlobal(from + QPoint(30, 0)), Qt::NoButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(table.viewport(), &moved);
    EXPECT_EQ(drags, 0);
}

TEST_F(ArchivePanelTest, openingIsSaidAfterAMomentAndEscapeEndsIt) {
    panel().setCursor(std::ptrdiff_t(*panel().items().rowOf("web.zip")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(status().contains("Čtu archiv…"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return status().contains("Čtu archiv…"); }));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(status().contains("Čtu archiv…"));
    settleAll();
    EXPECT_FALSE(panel().archive());
    EXPECT_EQ(cursorName(), "web.zip");
}

TEST_F(ArchivePanelTest, anEmptyFolderOffersNothingThatWouldFillIt) {
    open("web.zip");
    open("empty");
    auto* message = view().findChild<PanelMessage*>();
    EXPECT_EQ(message->content(), PanelMessage::Content::emptyFolder);
    for (const auto* button : message->findChildren<QAbstractButton*>())
        EXPECT_FALSE(button->isVisible()) << button->text().toStdString();
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    press(Qt::Key_Tab);
    int shown = 0;
    for (const auto* button :
         window.view(PanelSide::right).findChild<PanelMessage*>()->findChildren<QAbstractButton*>())
        shown += button->isVisible() ? 1 : 0;
    EXPECT_EQ(shown, 2);
}

TEST_F(ArchivePanelTest, whereThereIsLittleRoomTheBadgeGivesWayToThePath) {
    open("web.zip");
    open("css");
    auto* badge = view().findChild<ArchiveBadge*>();
    window.resize(1000, 600);
    QApplication::processEvents();
    EXPECT_EQ(badge->text(), "ZIP");
    EXPECT_TRUE(badge->isVisible());
    EXPECT_EQ(badge->accessibleName(), "ZIP · jen pro čtení");
    EXPECT_EQ((*(crumbs().end() - 2))->title(), "web.zip");
    view().pathBar().resize(300, view().pathBar().height());
    EXPECT_FALSE(badge->isVisible());
    EXPECT_EQ(crumbs().back()->title(), "css");
    window.resize(1440, 900);
    QApplication::processEvents();
    EXPECT_EQ(badge->text(), "ZIP · jen pro čtení");
    EXPECT_FALSE(badge->geometry().intersects(crumbs().back()->geometry()));
}

TEST_F(ArchivePanelTest, copyingOutAsksWithTheEntriesByName) {
    open("web.zip");
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_F5);
    auto* card = window.findChild<DialogCard*>("dialogCard");
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->accessibleName(), "Rozbalit 5 položek z „web.zip“");
    EXPECT_EQ(card->findChild<SourceList*>()->accessibleName(),
              "css, 7\u00A0B; empty, 0\u00A0B; index.html; inner.zip, 6\u00A0B; a další 1");
    press(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &view().table());
}

} // namespace fennik::test
