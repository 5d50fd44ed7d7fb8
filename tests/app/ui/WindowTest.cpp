#include "app/ui/PanelMessage.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "app/ui/RenameField.h"
#include "app/ui/RunLabel.h"
#include "app/ui/dialogs/ConflictDialog.h"
#include "app/ui/dialogs/ConflictSide.h"
#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/OutcomeLine.h"
#include "app/ui/dialogs/SourceList.h"
#include "tests/support/DiskTree.h"
#include "tests/support/WindowFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QPaintEvent>
#include <QTest>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace fennik::test {

namespace {

using app::PanelSide;

/// What of a widget was painted.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget) : widget_(widget) { widget.installEventFilter(this); }

    bool has(QPoint point) const { return region_.contains(point); }
    bool waitFor(QPoint point) {
        return QTest::qWaitFor([this, point] { return has(point); });
    }
    void paintAll() {
        widget_.update();
        waitFor(widget_.rect().center());
        region_ = {};
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            region_ += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QWidget& widget_;
    QRegion region_;
};

class WindowTest : public WindowFixture {
protected:
    WindowTest() {
        temp.folder("left/Faktury");
        temp.file("left/Smlouva.pdf", std::string(1'124'803, 'x'));
        const timespec times[2] = {{0, 0}, {1'795'184'760, 0}}; // 2026-11-20 15:26 in Prague
        utimensat(AT_FDCWD, temp.path("left/Smlouva.pdf").c_str(), times, 0);
        temp.folder("right");
    }

    void start() {
        window.show();
        app.start(temp.path("left"), temp.path("right"));
        settle();
        QApplication::processEvents();
    }
    ui::PanelTable& table(PanelSide side) { return window.view(side).table(); }
    QString statusText(PanelSide side) {
        QStringList parts;
        for (const auto* label : window.view(side).findChildren<ui::RunLabel*>())
            parts << label->text();
        return parts.join(QLatin1Char('|'));
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
        settle();
    }
    QColor pixel(PanelSide side, int row, int x) {
        auto& shown = table(side);
        const auto image = shown.viewport()->grab().toImage();
        return image.pixelColor(x, shown.rowViewportPosition(row) + 12);
    }
};

} // namespace

TEST_F(WindowTest, theCursorLooksLikeWhereTheKeyboardIs) {
    start();
    const auto& tokens = theme.tokens();
    EXPECT_EQ(pixel(PanelSide::left, 0, 300), tokens.accent);
    EXPECT_EQ(pixel(PanelSide::right, 0, 300), tokens.panelInactive);
    press(Qt::Key_Down);
    EXPECT_EQ(pixel(PanelSide::left, 0, 300), tokens.panel);
    EXPECT_EQ(pixel(PanelSide::left, 1, 300), tokens.accent);
    press(Qt::Key_Tab);
    EXPECT_EQ(app.activeSide(), PanelSide::right);
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::right));
    EXPECT_EQ(pixel(PanelSide::right, 0, 300), tokens.accent);
    EXPECT_EQ(pixel(PanelSide::left, 1, 300), tokens.panelInactive);

    window.view(PanelSide::right).setFocusLook(ui::FocusLook::near);
    EXPECT_EQ(pixel(PanelSide::right, 0, 300), tokens.accentSoft);
}

TEST_F(WindowTest, aMarkThatComesOrGoesPaintsItsRowAlone) {
    start();
    auto& shown = table(PanelSide::left);
    PaintWatch watch(*shown.viewport());
    const auto inRow = [&shown](int row) {
        return QPoint(100, shown.rowViewportPosition(row) + 12);
    };
    for (const auto change : {&app::PanelModel::markAll, &app::PanelModel::invertMarks}) {
        watch.paintAll();
        (app.activePanel().*change)();
        EXPECT_TRUE(watch.waitFor(inRow(2)));
        EXPECT_FALSE(watch.has(inRow(0)));
    }
    EXPECT_EQ(pixel(PanelSide::left, 2, 300), theme.tokens().panel);
}

TEST_F(WindowTest, keysSortAndWalkInTheActivePanel) {
    start();
    press(Qt::Key_1, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(app.activePanel().tab().sort.ascending);
    press(Qt::Key_3, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(app.activePanel().tab().sort.key, SortKey::size);
    EXPECT_EQ(app.panel(PanelSide::right).tab().sort.key, SortKey::name);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(window.windowTitle(), "Faktury – Fennik");
    press(Qt::Key_Backspace);
    EXPECT_EQ(window.windowTitle(), "left – Fennik");
    EXPECT_EQ(app.activePanel().cursor(), 1U);
}

TEST_F(WindowTest, aClickOnAMessageActivatesItsPanel) {
    start();
    auto* message = window.view(PanelSide::right).findChild<ui::PanelMessage*>("panelMessage");
    ASSERT_TRUE(message->isVisible());
    QTest::mouseClick(message, Qt::LeftButton);
    EXPECT_EQ(app.activeSide(), PanelSide::right);
}

TEST_F(WindowTest, aNameIsNeverTakenForMarkup) {
    const std::string hostile = "<img src='file:x'> R&D [*]";
    temp.folder("left/" + hostile.substr(0, hostile.find('/')));
    temp.link("left/l", "<b>x</b> & y");
    start();
    app.activePanel().navigate(FileUrl(temp.path("left/" + hostile)));
    settle();
    EXPECT_EQ(window.windowTitle(), "<img src='file:x'> R&D [*][*] – Fennik");
    for (const auto* crumb : window.view(PanelSide::left).findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(crumb->toolTip().contains("<img")) << crumb->toolTip().toStdString();
    }
    app.activePanel().goToParent();
    settle();
    QApplication::processEvents();
    settle();
    app.activePanel().setCursor(static_cast<std::ptrdiff_t>(*app.activePanel().items().rowOf("l")));
    EXPECT_TRUE(statusText(PanelSide::left).contains("→ <b>x</b> & y"));
    for (const auto* label : window.findChildren<ui::RunLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
}

TEST_F(WindowTest, theStatusLineDescribesTheItemUnderTheCursor) {
    start();
    press(Qt::Key_End);
    EXPECT_TRUE(statusText(PanelSide::left)
                    .startsWith("2 položky|1\u202F124\u202F803 B · 20. 11. 2026 15:26:00|Volno "));
    EXPECT_TRUE(statusText(PanelSide::right).startsWith("0 položek||"));
}

TEST_F(WindowTest, columnsGiveWayToTheName) {
    start();
    const auto shown = [this](int width) {
        auto& header = *table(PanelSide::left).horizontalHeader();
        ui::PanelGeometry(theme).layOut(header, width);
        int total = 0;
        for (int section = 0; section < header.count(); ++section)
            total += header.sectionSize(section);
        EXPECT_TRUE(total == width || header.sectionSize(0) == 160) << width;
        return header.count() - header.hiddenSectionCount();
    };
    EXPECT_EQ(shown(700), 4);
    EXPECT_EQ(shown(559), 3);
    EXPECT_EQ(shown(419), 2);
    EXPECT_EQ(shown(258), 2);
    EXPECT_EQ(shown(200), 1);
}

TEST_F(WindowTest, screenReadersHearPanelAndRow) {
    start();
    EXPECT_EQ(table(PanelSide::left).accessibleName(), "Levý panel, left, 2 položky");
    EXPECT_EQ(table(PanelSide::right).accessibleName(), "Pravý panel, right, 0 položek");
    auto* rows = QAccessible::queryAccessibleInterface(&table(PanelSide::left));
    ASSERT_NE(rows->tableInterface(), nullptr);
    EXPECT_EQ(rows->tableInterface()->cellAt(2, 0)->text(QAccessible::Name),
              "Smlouva.pdf, dokument PDF, 1,12\u00A0MB, změněno 20. 11. 2026 15:26");
    EXPECT_EQ(rows->tableInterface()->cellAt(0, 0)->text(QAccessible::Name), "nadřazená složka");
}

TEST_F(WindowTest, aDialogNamesWhatThePanelsKnowAndGivesTheKeyboardBack) {
    start();
    std::vector<FileUrl> dropped{FileUrl(temp.path("left/Smlouva.pdf")), FileUrl("/srv/x/Data/")};
    for (int i = 0; i < 12; ++i)
        dropped.push_back(FileUrl("/srv/x/" + std::to_string(i)));
    press(Qt::Key_Tab);
    app.receiveDrop(TransferKind::copy, dropped, FileUrl(temp.path("right/")));
    auto* card = window.findChild<ui::DialogCard*>("dialogCard");
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->accessibleName(), "Kopírovat 14 položek?");
    EXPECT_EQ(card->findChild<ui::SourceList*>()->accessibleName(),
              "Smlouva.pdf, 1,12\u00A0MB; Data; 0; 1; a další 10");
    EXPECT_TRUE(card->isAncestorOf(QApplication::focusWidget()));
    EXPECT_EQ(pixel(PanelSide::right, 0, 300), theme.tokens().accentSoft);
    press(Qt::Key_Escape);
    EXPECT_FALSE(app.dialog());
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::right));
}

TEST_F(WindowTest, theTransferDialogSaysWhatWillComeOfIt) {
    start();
    press(Qt::Key_End);
    press(Qt::Key_F5);
    auto* card = window.findChild<ui::DialogCard*>("dialogCard");
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(card->accessibleName(), "Kopírovat „Smlouva.pdf“");
    auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(field, nullptr);
    const auto* outcome = card->findChild<ui::OutcomeLine*>("outcomeLine");
    const auto says = [&](const std::string& target, const QString& sentence) {
        field->setText(QString::fromStdString(target));
        emit field->textEdited(field->text());
        timers.pass(std::chrono::milliseconds(120));
        settle();
        EXPECT_EQ(outcome->text(), sentence);
        EXPECT_EQ(field->accessibleDescription(), sentence);
    };
    EXPECT_EQ(outcome->text(), "1 položka půjde do existující složky „right“.");
    says(temp.path("right/x"), "kopie pod tímto jménem: „x“");
    EXPECT_EQ(outcome->kind(), ui::OutcomeLine::Kind::renames);
    says(temp.path("left/Smlouva.pdf/x"), "„Smlouva.pdf“ není složka.");
    EXPECT_EQ(outcome->kind(), ui::OutcomeLine::Kind::error);
    press(Qt::Key_Return);
    EXPECT_TRUE(app.dialog()) << "what would not go is not begun";
    press(Qt::Key_Escape);
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::left));
}

TEST_F(WindowTest, aClashShowsBothItemsAndTheNextOneInTheSameCard) {
    temp.file("right/Faktury", "no folder");
    temp.file("right/Smlouva.pdf", "old");
    start();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_F5);
    press(Qt::Key_Return);
    const auto card = [this] { return window.findChild<ui::ConflictDialog*>(); };
    const auto shows = [&](const QString& title) {
        return QTest::qWaitFor([&] {
            settle();
            return card() != nullptr && card()->accessibleName() == title;
        });
    };
    ASSERT_TRUE(shows("„Faktury“ už v cíli je"));
    auto* first = card();
    EXPECT_TRUE(
        first->findChild<ui::ConflictSide*>("newItem")->accessibleName().contains("složka"));
    EXPECT_FALSE(
        first->findChild<ui::ConflictSide*>("existingItem")->accessibleName().contains("složka"));
    press(Qt::Key_P);
    QTest::qWait(450);
    EXPECT_EQ(contentOf(temp.path("right/Faktury")), "no folder")
        << "a key meant for something else";
    press(Qt::Key_K);
    ASSERT_TRUE(shows("„Smlouva.pdf“ už v cíli je"));
    EXPECT_EQ(card(), first);
    press(Qt::Key_O);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        settle();
        timers.pass(std::chrono::milliseconds(100));
        return !app.dialog() && std::filesystem::exists(temp.path("right/Smlouva 2.pdf"));
    }));
    EXPECT_EQ(contentOf(temp.path("right/Smlouva.pdf")), "old");
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::left));
}

TEST_F(WindowTest, renamingInARowGoesOnUntilTheNameIsGood) {
    start();
    press(Qt::Key_End);
    press(Qt::Key_F6, Qt::ShiftModifier);
    auto* field = window.view(PanelSide::left).findChild<ui::RenameField*>("renameField");
    ASSERT_EQ(QApplication::focusWidget(), field);
    EXPECT_EQ(field->selectedText(), "Smlouva");
    QTest::keyClicks(field, "a/b");
    press(Qt::Key_Return);
    EXPECT_EQ(field->accessibleDescription(), "Název nesmí obsahovat „/“.");
    EXPECT_EQ(QApplication::focusWidget(), field);
    field->selectAll();
    QTest::keyClicks(field, "Aa.pdf");
    press(Qt::Key_Return);
    EXPECT_FALSE(field->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::left));
    EXPECT_EQ(app.activePanel().cursorItem()->name, "Aa.pdf");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(app.activePanel().cursorItem()->name, "Smlouva.pdf");
    press(Qt::Key_F2);
    QTest::keyClicks(field, "left alone");
    press(Qt::Key_Escape);
    EXPECT_TRUE(std::filesystem::exists(temp.path("left/Smlouva.pdf")));
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::left));
}

TEST_F(WindowTest, anErrorStandsInPlaceOfTheRowsAndKeysStillWork) {
    start();
    press(Qt::Key_Tab);
    std::filesystem::remove(temp.path("right"));
    press(Qt::Key_R, Qt::ControlModifier);
    auto* message = window.findChild<ui::PanelView*>("rightPanel")
                        ->findChild<ui::PanelMessage*>("panelMessage");
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(message->findChild<QLabel*>("panelMessageText")->text().toStdString(),
              app.panel(PanelSide::right).error()->message());
    EXPECT_TRUE(statusText(PanelSide::right).startsWith("Nedostupná"));
    EXPECT_EQ(QApplication::focusWidget(), &table(PanelSide::right));
    press(Qt::Key_Backspace);
    EXPECT_FALSE(message->isVisible());
    EXPECT_EQ(window.windowTitle().toStdString(),
              std::string(temp.url().lastComponent()) + " – Fennik");
}

TEST_F(WindowTest, loadingIsShownOnlyWhenItTakesAWhile) {
    window.show();
    app.start(temp.path("left"), temp.path("right"));
    auto* view = &window.view(PanelSide::left);
    auto* stripe = view->findChild<QWidget*>("loadingStripe");
    auto* skeleton = view->findChild<QWidget*>("loadingSkeleton");
    QApplication::processEvents();
    EXPECT_FALSE(stripe->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return stripe->isVisible(); }, 5000));
    EXPECT_FALSE(skeleton->isVisible());
    EXPECT_TRUE(statusText(PanelSide::left).startsWith("Načítám…"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return skeleton->isVisible(); }, 5000));
    settle();
    EXPECT_FALSE(stripe->isVisible());
    EXPECT_FALSE(skeleton->isVisible());
    EXPECT_TRUE(statusText(PanelSide::left).startsWith("2 položky"));
}

TEST_F(WindowTest, aChangeOfThemeReachesEverything) {
    start();
    theme.setAppearance(ui::Appearance::dark);
    EXPECT_EQ(pixel(PanelSide::left, 1, 300), ui::Tokens::of(ui::Appearance::dark).panel);
    const auto image = window.grab().toImage();
    EXPECT_EQ(image.pixelColor(2, 2), ui::Tokens::of(ui::Appearance::dark).window);
}

} // namespace fennik::test
