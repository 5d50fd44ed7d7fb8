#include "app/ui/Crumb.h"
#include "app/ui/DropHint.h"
#include "app/ui/FileDrag.h"
#include "app/ui/PanelDrops.h"
#include "app/ui/PanelMessage.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "app/ui/PathBar.h"
#include "app/ui/StatusLine.h"
#include "app/ui/TabButton.h"
#include "tests/support/WindowFixture.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace fennik::test {

namespace {

using namespace ui;
using app::PanelSide;

/// The left panel shows "left" with two folders and two files, the right one "right" with a folder.
/// Drags come over the right one as the desktop would report them.
class DragTest : public WindowFixture {
protected:
    DragTest() {
        temp.folder("left/Faktury");
        temp.folder("left/Šablony");
        temp.file("left/a.txt");
        temp.file("left/b.txt");
        temp.folder("right/Cíl");
        temp.file("right/soubor");
        window.show();
        app.start(temp.path("left"), temp.path("right"));
        settle();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        QApplication::processEvents();
        QObject::connect(
            &drops(), &PanelDrops::dropped, &window,
            [this](TransferKind kind, const std::vector<FileUrl>& urls, const FileUrl& folder) {
                dropped = Dropped{kind, urls, folder.path()};
            });
    }

    PanelView& view(PanelSide side) { return window.view(side); }
    PanelTable& table(PanelSide side) { return view(side).table(); }
    PanelDrops& drops() { return *view(PanelSide::right).findChild<PanelDrops*>(); }
    QWidget& rows() { return *table(PanelSide::right).viewport(); }
    QPoint rowPoint(PanelSide side, int row) {
        return {120, table(side).rowViewportPosition(row) + 10};
    }
    QString status() {
        QStringList parts;
        for (const auto* label :
             view(PanelSide::right).findChild<StatusLine*>()->findChildren<QLabel*>())
            parts << label->text();
        return parts.join(QLatin1Char('|'));
    }
    void carry(const std::vector<std::string>& paths) {
        std::vector<FileUrl> urls;
        for (const auto& path : paths)
            urls.emplace_back(temp.path(path));
        carried = FileDrag::data(urls);
    }

    bool enter(QWidget& widget) {
        QDragEnterEvent event({1, 1}, actions, carried.get(), Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted();
    }
    /// The action that the drop would be; none where it is forbidden.
    std::optional<Qt::DropAction> over(QWidget& widget, QPoint point,
                                       Qt::KeyboardModifiers held = Qt::NoModifier) {
        QDragMoveEvent event(point, actions, carried.get(), Qt::LeftButton, held);
        event.ignore();
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted() ? std::optional(event.dropAction()) : std::nullopt;
    }
    Qt::DropAction letGo(QWidget& widget, QPoint point,
                         Qt::KeyboardModifiers held = Qt::NoModifier) {
        QDropEvent event(point, actions, carried.get(), Qt::LeftButton, held);
        QApplication::sendEvent(&widget, &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }

    struct Dropped {
        TransferKind kind = TransferKind::copy;
        std::vector<FileUrl> files = {};
        std::string folder = {};
    };
    std::optional<Dropped> dropped;
    Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction;
    std::unique_ptr<QMimeData> carried;
};

} // namespace

TEST_F(DragTest, dragsTheMarkedItemsOrTheOneThatIsPressed) {
    std::vector<std::string> names;
    QObject::connect(&table(PanelSide::left), &PanelTable::dragStarted, &window,
                     [&](const std::vector<FileUrl>& items) {
                         names.clear();
                         for (const auto& item : items)
                             names.emplace_back(item.lastComponent());
                     });
    // Without the real drag, which takes the mouse.
    QObject::disconnect(&table(PanelSide::left), &PanelTable::dragStarted, &view(PanelSide::left),
                        nullptr);
    const auto dragRow = [&](int row) {
        auto* viewport = table(PanelSide::left).viewport();
        const auto from = rowPoint(PanelSide::left, row);
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        QMouseEvent moved(QEvent::MouseMove, from + QPoint(30, 0),
                          viewport->mapToGlobal(from + QPoint(30, 0)), Qt::NoButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(viewport, &moved);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, from);
    };
    auto& panel = app.panel(PanelSide::left);
    dragRow(0);
    EXPECT_TRUE(names.empty()); // the parent folder stays where it is
    dragRow(3);
    EXPECT_EQ(names, std::vector<std::string>{"a.txt"});
    panel.toggleMark(1);
    panel.toggleMark(4);
    dragRow(4);
    EXPECT_EQ(names, (std::vector<std::string>{"Faktury", "b.txt"}));
    dragRow(3); // is not marked itself
    EXPECT_EQ(names, std::vector<std::string>{"a.txt"});
}

TEST_F(DragTest, aDropGoesIntoTheFolderBelowTheMouse) {
    carry({"left/a.txt", "left/b.txt"});
    ASSERT_TRUE(enter(rows()));
    EXPECT_EQ(over(rows(), rowPoint(PanelSide::right, 1)), Qt::CopyAction);
    EXPECT_TRUE(drops().isTarget());
    EXPECT_TRUE(status().contains("Ctrl kopíruje · Shift přesouvá · Esc zruší"));
    EXPECT_EQ(window.findChild<DropHint*>()->text(), "Kopírovat do složky „Cíl“");
    EXPECT_EQ(over(rows(), rowPoint(PanelSide::right, 1), Qt::ShiftModifier), Qt::MoveAction);
    EXPECT_EQ(window.findChild<DropHint*>()->text(), "Přesunout do složky „Cíl“");
    // Whoever dragged must not take the files away by itself.
    EXPECT_EQ(letGo(rows(), rowPoint(PanelSide::right, 1), Qt::ShiftModifier), Qt::CopyAction);
    ASSERT_TRUE(dropped);
    EXPECT_EQ(dropped->kind, TransferKind::move);
    EXPECT_EQ(dropped->folder, temp.path("right/Cíl"));
    ASSERT_EQ(dropped->files.size(), 2U);
    EXPECT_EQ(dropped->files[1].path(), temp.path("left/b.txt"));
    EXPECT_FALSE(drops().isTarget());
    EXPECT_FALSE(window.findChild<DropHint*>()->isVisible());

    enter(rows());
    letGo(rows(), rowPoint(PanelSide::right, 2)); // a file counts as free space
    EXPECT_EQ(dropped->kind, TransferKind::copy);
    EXPECT_EQ(dropped->folder, temp.path("right"));
    enter(rows());
    letGo(rows(), rowPoint(PanelSide::right, 0));
    EXPECT_EQ(dropped->folder, FileUrl(temp.path("right")).parent().path());
    actions = Qt::CopyAction; // all that this program offers
    enter(rows());
    EXPECT_EQ(over(rows(), rowPoint(PanelSide::right, 1), Qt::ShiftModifier), Qt::CopyAction);
}

TEST_F(DragTest, crumbsAndTabsAreFoldersToo) {
    carry({"left/a.txt"});
    auto& bar = view(PanelSide::right).pathBar();
    const auto crumbs = bar.findChildren<Crumb*>();
    const auto* parent = crumbs[crumbs.size() - 2];
    ASSERT_TRUE(enter(bar));
    EXPECT_EQ(over(bar, parent->geometry().center()), Qt::CopyAction);
    letGo(bar, parent->geometry().center());
    EXPECT_EQ(dropped->folder, FileUrl(temp.path("right")).parent().path());
    EXPECT_FALSE(over(bar, {3, 3}));

    app.panel(PanelSide::right).openTab(temp.path("left/Faktury"));
    settle();
    QApplication::processEvents();
    auto* strip = view(PanelSide::right).findChild<QWidget*>("tabStrip");
    const auto* tab = strip->findChildren<TabButton*>().back();
    const auto onTab = tab->mapTo(strip, tab->rect().center());
    enter(*strip);
    letGo(*strip, onTab);
    EXPECT_EQ(dropped->folder, temp.path("left/Faktury"));
}

TEST_F(DragTest, whatCannotBeSaysWhy) {
    carry({"right/Cíl"});
    enter(rows());
    EXPECT_FALSE(over(rows(), rowPoint(PanelSide::right, 1)));
    EXPECT_FALSE(drops().isTarget());
    EXPECT_TRUE(status().contains("„Cíl“ nejde vložit do sebe sama."));
    EXPECT_EQ(letGo(rows(), rowPoint(PanelSide::right, 1)), Qt::IgnoreAction);
    EXPECT_FALSE(dropped);
    EXPECT_FALSE(status().contains("nejde"));
    carried = std::make_unique<QMimeData>();
    carried->setText("jen text");
    EXPECT_FALSE(enter(rows()));
}

TEST_F(DragTest, anEmptyFolderTakesThemToo) {
    app.panel(PanelSide::right).navigate(FileUrl(temp.path("right/Cíl")));
    settle();
    carry({"left/a.txt"});
    auto* message = view(PanelSide::right).findChild<PanelMessage*>();
    ASSERT_TRUE(message->isVisible()); // over where the rows would be
    ASSERT_TRUE(enter(*message));
    EXPECT_EQ(over(*message, {100, 40}), Qt::CopyAction);
    letGo(*message, {100, 40});
    ASSERT_TRUE(dropped);
    EXPECT_EQ(dropped->folder, temp.path("right/Cíl"));
}

TEST_F(DragTest, whoStaysAtTheEdgeScrollsTheRows) {
    for (int i = 0; i < 99; ++i)
        temp.folder("right/Cíl/" + std::to_string(i));
    app.panel(PanelSide::right).navigate(FileUrl(temp.path("right/Cíl")));
    settle();
    auto& bar = *table(PanelSide::right).verticalScrollBar();
    carry({"left/a.txt"});
    enter(rows());
    const QPoint low(120, rows().height() - 2);
    over(rows(), low);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.value() == 3; }));
    over(rows(), {120, rows().height() / 2});
    const int stands = bar.value();
    QTest::qWait(200);
    EXPECT_EQ(bar.value(), stands);
    over(rows(), {120, 2});
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.value() == 0; }));
    const auto parent = temp.path("right"); // has come below the mouse, which has not moved
    EXPECT_EQ(window.findChild<DropHint*>()->text(), "Kopírovat do složky „right“");
    letGo(rows(), {120, 2});
    EXPECT_EQ(dropped->folder, parent);
}

TEST_F(DragTest, whoStaysOverAFolderOpensIt) {
    carry({"left/a.txt"});
    enter(rows());
    over(rows(), rowPoint(PanelSide::right, 1));
    QTest::qWait(400);
    over(rows(), rowPoint(PanelSide::right, 2)); // went on in time
    QTest::qWait(600);
    settle();
    EXPECT_EQ(app.panel(PanelSide::right).tab().path, temp.path("right"));
    over(rows(), rowPoint(PanelSide::right, 1));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        settle();
        return app.panel(PanelSide::right).tab().path == temp.path("right/Cíl");
    }));
    over(rows(), {120, 200});
    letGo(rows(), {120, 200});
    EXPECT_EQ(dropped->folder, temp.path("right/Cíl"));
}

} // namespace fennik::test
