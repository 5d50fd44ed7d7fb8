#include "app/ui/RenameField.h"
#include "app/ui/ErrorStrip.h"
#include "app/ui/NameText.h"
#include "app/ui/PanelTable.h"
#include "tests/support/PanelModelFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>

namespace fennik::test {

namespace {

using namespace ui;

class RenameFieldTest : public PanelFixture {
protected:
    RenameFieldTest() {
        temp.folder("left/Faktury.2026");
        temp.file("left/Smlouva.tar.gz", "x");
        temp.file("left/s\xFF\xC4\x8D.txt", "x");
        for (int i = 0; i < 40; ++i)
            temp.file("left/z" + std::to_string(i), "x");
        window.resize(600, 400);
        table.setGeometry(0, 0, 600, 400);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        panel.refresh();
        settle();
        QObject::connect(&field, &RenameField::committed, &window,
                         [this](const std::string& name) { committed.push_back(name); });
        QObject::connect(&field, &RenameField::nextWanted, &window,
                         [this](const std::string& name) { next.push_back(name); });
        QObject::connect(&field, &RenameField::left, &window, [this] { ++leaves; });
    }

    void press(int key) { QTest::keyClick(&field, Qt::Key(key)); }

    app::PanelModel panel{app::PanelSide::left, services(),       settings, sizeCache,
                          noPassword,           temp.path("left")};
    Theme theme{Appearance::light};
    Icons icons{theme};
    QWidget window;
    PanelTable table{panel, theme, icons, &window};
    QLineEdit other{&window};
    RenameField field{table, theme, icons};
    ErrorStrip& strip = *table.viewport()->findChild<ErrorStrip*>();
    std::vector<std::string> committed;
    std::vector<std::string> next;
    int leaves = 0;
};

} // namespace

TEST_F(RenameFieldTest, selectsTheNameWithoutItsExtension) {
    field.open("Smlouva.tar.gz");
    EXPECT_EQ(QApplication::focusWidget(), &field);
    EXPECT_EQ(field.selectedText(), "Smlouva.tar");
    EXPECT_TRUE(table.rowAt(field.geometry().center().y()) ==
                int(*panel.items().rowOf("Smlouva.tar.gz")));
    field.open("Faktury.2026");
    EXPECT_EQ(field.selectedText(), "Faktury.2026");
    QTest::keyClicks(&field, "Dane");
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    EXPECT_EQ(committed, std::vector<std::string>{"Dane"});
    EXPECT_EQ(next, std::vector<std::string>{"Dane"});
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(RenameFieldTest, whatIsLeftAloneComesBackToTheByte) {
    field.open("s\xFF\xC4\x8D.txt");
    EXPECT_EQ(field.selectedText().size(), 3);
    press(Qt::Key_Return);
    press(Qt::Key_End);
    QTest::keyClicks(&field, "2");
    press(Qt::Key_Return);
    EXPECT_EQ(committed, (std::vector<std::string>{"s\xFF\xC4\x8D.txt", "s\xFF\xC4\x8D.txt2"}));
    for (const std::string name :
         {"\xF0\x9F\xA6\x8A", "\xED\xB3\xBF", "\xC4", "\xEF\xBF\xBD", "a\nb\x01", "\xE2\x82"})
        EXPECT_EQ(NameText::toBytes(NameText::fromBytes(name)), name);
}

TEST_F(RenameFieldTest, anErrorStaysWithTheTextItIsAbout) {
    const auto message = QStringLiteral("„Faktury“ už ve složce je.");
    field.open("Smlouva.tar.gz");
    QTest::keyClicks(&field, "Faktury");
    field.showError(message);
    EXPECT_TRUE(strip.isVisible());
    EXPECT_GT(strip.y(), field.geometry().bottom());
    EXPECT_LT(strip.width(), field.width());
    EXPECT_EQ(field.accessibleDescription(), message);
    EXPECT_EQ(field.grab().toImage().pixelColor(200, 1), theme.tokens().err);
    QTest::keyClicks(&field, "x");
    EXPECT_FALSE(strip.isVisible());
    EXPECT_EQ(field.accessibleDescription(), "");

    table.verticalScrollBar()->setValue(table.verticalScrollBar()->maximum());
    const auto last = std::string(panel.items().view(panel.items().size() - 1).name);
    field.open(last);
    field.showError(message);
    EXPECT_TRUE(table.viewport()->rect().contains(strip.geometry()));
    EXPECT_FALSE(strip.geometry().intersects(field.geometry()));
}

TEST_F(RenameFieldTest, staysOverItsRow) {
    field.open("z0");
    const int row = int(*panel.items().rowOf("z0"));
    table.verticalScrollBar()->setValue(2);
    EXPECT_EQ(field.y(), table.rowViewportPosition(row) + 1);
    temp.file("left/a-new", "x");
    panel.refresh();
    settle();
    EXPECT_EQ(field.y(), table.rowViewportPosition(int(*panel.items().rowOf("z0"))) + 1);
    window.resize(500, 400);
    table.resize(500, 400);
    EXPECT_LE(field.geometry().right(), table.viewport()->width());
}

TEST_F(RenameFieldTest, escapeAndAnotherPlaceForTheKeyboardLeaveTheName) {
    field.open("z0");
    press(Qt::Key_Escape);
    EXPECT_EQ(leaves, 1);
    other.setFocus();
    EXPECT_EQ(leaves, 2);
    field.open("z0");
    QFocusEvent windowLost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&field, &windowLost);
    EXPECT_EQ(leaves, 2);
    field.close();
    EXPECT_EQ(leaves, 2);
    EXPECT_EQ(QApplication::focusWidget(), &table);
    EXPECT_TRUE(committed.empty());
}

TEST_F(RenameFieldTest, aPastedTextStaysOneLine) {
    QApplication::clipboard()->setText(QStringLiteral("Daně\n"));
    field.open("z0");
    field.paste();
    press(Qt::Key_Return);
    EXPECT_EQ(committed, std::vector<std::string>{"Daně"});
}

} // namespace fennik::test
