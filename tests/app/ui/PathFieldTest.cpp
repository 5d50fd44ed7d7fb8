#include "app/ui/PathField.h"
#include "app/ui/ErrorStrip.h"
#include "app/ui/MenuList.h"
#include "app/ui/SuggestionList.h"
#include "core/base/PathText.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

class PathFieldTest : public testing::Test {
protected:
    PathFieldTest() {
        window.resize(760, 480);
        field.setGeometry(106, 80, 515, field.sizeHint().height());
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field.open("/home/jana");
    }

    void press(int key) { QTest::keyClick(&field, Qt::Key(key)); }
    void type(const QString& text) {
        field.selectAll();
        QTest::keyClicks(&field, text);
    }
    void suggest(std::vector<std::string> names) {
        for (auto& name : names)
            name.insert(0, "/home/jana/");
        field.setSuggestions(std::move(names), "/home/jana/Smlouvy");
    }
    QString last(const QSignalSpy& spy) {
        return spy.isEmpty() ? QStringLiteral("nothing") : spy.last().at(0).toString();
    }
    QColor pixelOf(const QPoint& point) { return window.grab().toImage().pixelColor(point); }

    Theme theme{Appearance::light};
    Icons icons{theme};
    QWidget window;
    QLineEdit other{&window};
    PathField field{PathField::Place::pathBar, theme, icons, &window};
    SuggestionList& list = *window.findChild<SuggestionList*>();
    ErrorStrip& strip = *window.findChild<ErrorStrip*>();
    QSignalSpy typed{&field, &PathField::typed};
    QSignalSpy accepted{&field, &PathField::accepted};
    QSignalSpy left{&field, &PathField::left};
};

} // namespace

TEST_F(PathFieldTest, theFirstSuggestionStandsBehindTheTextUntilAnotherIsChosen) {
    EXPECT_EQ(field.selectedText(), "/home/jana");
    type(QStringLiteral("/home/jana/sm"));
    EXPECT_EQ(last(typed), "/home/jana/sm");
    EXPECT_FALSE(list.isVisible());
    suggest({"Směrnice", "Smlouvy", "Šmídovi"});
    EXPECT_TRUE(list.isVisible());
    EXPECT_EQ(field.completion(), "ěrnice");
    press(Qt::Key_Up);
    EXPECT_EQ(field.completion(), "ídovi");
    press(Qt::Key_Up);
    EXPECT_EQ(field.completion(), "louvy");
    press(Qt::Key_Left);
    EXPECT_EQ(field.completion(), "");
    press(Qt::Key_End);
    EXPECT_EQ(field.text(), "/home/jana/sm");
    press(Qt::Key_Return);
    EXPECT_EQ(last(accepted), "/home/jana/Smlouvy");

    // Down goes round, through the text as it was typed.
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Enter);
    EXPECT_EQ(last(accepted), "/home/jana/sm");
    EXPECT_EQ(accepted.count(), 2);
}

TEST_F(PathFieldTest, typingOnKeepsOnlyWhatFitsUntilTheAnswerComes) {
    type(QStringLiteral("/home/jana/s"));
    suggest({"Směrnice", "Stažené", "s ", "Smlouvy 2026"});
    QTest::keyClicks(&field, QStringLiteral("m"));
    ASSERT_EQ(list.rows().size(), 2U);
    EXPECT_EQ(field.completion(), "ěrnice");
    QTest::keyClicks(&field, QStringLiteral("louvy "));
    EXPECT_EQ(field.completion(), "2026");
    suggest({"Smlouvy 2026"}); // the search itself is without the blank
    EXPECT_EQ(field.completion(), "2026");
    QTest::keyClicks(&field, QStringLiteral("/"));
    EXPECT_TRUE(list.rows().empty());
    EXPECT_FALSE(list.isVisible());
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(field.text(), "/home/jana/smlouvy /");
}

TEST_F(PathFieldTest, tabCompletesAndStaysInTheField) {
    type(QStringLiteral("/home/jana/s"));
    suggest({"Směrnice", "Smlouvy"});
    press(Qt::Key_Tab);
    EXPECT_EQ(field.text(), "/home/jana/Směrnice/");
    EXPECT_EQ(last(typed), "/home/jana/Směrnice/");
    EXPECT_FALSE(list.isVisible());
    press(Qt::Key_Tab);
    press(Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), &field);
    EXPECT_EQ(field.text(), "/home/jana/Směrnice/");
    EXPECT_TRUE(left.isEmpty());
}

TEST_F(PathFieldTest, everyNameComesBackToTheByte) {
    for (const std::string name : {"s\xFF%", "s\nx", "s ", "s\u202Ex", "s?#&č"}) {
        type(QStringLiteral("/home/jana/s"));
        suggest({name});
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        EXPECT_EQ(pathFromStored(last(accepted).toStdString()), "/home/jana/" + name);
        press(Qt::Key_Tab);
        EXPECT_EQ(pathFromStored(field.text().toStdString()), "/home/jana/" + name);
        QTest::keyClicks(&field, QStringLiteral("pod"));
        field.setSuggestions({"/home/jana/" + name + "/Podklady"}, "");
        EXPECT_EQ(field.completion(), "klady");
    }
}

TEST_F(PathFieldTest, aPastedTextStaysOneLine) {
    QApplication::clipboard()->setText(QStringLiteral("\n/srv/data\r\n/etc\n"));
    field.selectAll();
    field.paste();
    EXPECT_EQ(field.text(), "/srv/data");
    EXPECT_EQ(last(typed), "/srv/data");
}

TEST_F(PathFieldTest, aFailureStandsBelowUntilTheTextChanges) {
    const auto message = QStringLiteral("Složka „x“ už neexistuje.");
    type(QStringLiteral("/home/jana/s"));
    suggest({"Smlouvy"});
    field.showError(message);
    EXPECT_TRUE(strip.isVisible());
    EXPECT_FALSE(list.isVisible());
    EXPECT_EQ(field.completion(), "");
    EXPECT_GE(strip.y(), field.geometry().bottom());
    EXPECT_EQ(field.accessibleDescription(), message);
    EXPECT_EQ(pixelOf(strip.geometry().topRight() + QPoint(-20, 3)), theme.tokens().errSoft);
    EXPECT_EQ(pixelOf(field.geometry().topLeft() + QPoint(200, 1)), theme.tokens().err);
    QTest::keyClicks(&field, QStringLiteral("m"));
    EXPECT_FALSE(strip.isVisible());
    EXPECT_EQ(field.accessibleDescription(), "");
    EXPECT_EQ(pixelOf(field.geometry().topLeft() + QPoint(200, 1)), theme.tokens().accent);
}

TEST_F(PathFieldTest, escapeAndAnotherPlaceForTheKeyboardEndIt) {
    type(QStringLiteral("/home/jana/s"));
    suggest({"Smlouvy"});
    QObject::connect(&field, &PathField::left, &field, &QWidget::hide);
    press(Qt::Key_Escape);
    EXPECT_EQ(left.count(), 1);
    EXPECT_EQ(QApplication::focusWidget(), nullptr);
    EXPECT_FALSE(list.isVisible());
    other.setFocus();
    EXPECT_EQ(left.count(), 1);

    field.show();
    field.open("/srv");
    QFocusEvent windowLost(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(&field, &windowLost);
    EXPECT_EQ(left.count(), 1);
    other.setFocus();
    EXPECT_EQ(left.count(), 2);
}

TEST_F(PathFieldTest, manySuggestionsAreListedAsTheyComeIntoView) {
    type(QStringLiteral("/home/jana/s"));
    std::vector<std::string> names;
    for (int i = 0; i < 10'000; ++i)
        names.push_back("s" + std::to_string(i));
    suggest(std::move(names));
    window.grab();
    auto* rows = list.findChild<MenuList*>();
    EXPECT_LE(rows->height(), rows->heightOf(12));
    press(Qt::Key_Up);
    EXPECT_EQ(list.chosen(), 9999);
    EXPECT_TRUE(rows->viewport()->rect().contains(rows->visualRect(rows->currentIndex())));
    EXPECT_EQ(QApplication::focusWidget(), &field);

    const auto middle = rows->visualRect(rows->model()->index(9998, 0)).center();
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, {}, middle);
    EXPECT_EQ(last(accepted), "/home/jana/s9998");
    EXPECT_EQ(QApplication::focusWidget(), &field);
}

TEST_F(PathFieldTest, screenReadersHearTheSuggestions) {
    type(QStringLiteral("/home/jana/s"));
    suggest({"Směrnice", "Smlouvy"});
    auto* rows = QAccessible::queryAccessibleInterface(list.findChild<MenuList*>());
    EXPECT_EQ(rows->role(), QAccessible::List);
    ASSERT_EQ(rows->childCount(), 2);
    EXPECT_EQ(rows->child(0)->text(QAccessible::Name), "/home/jana/Směrnice");
    EXPECT_EQ(rows->child(1)->text(QAccessible::Name), "/home/jana/Smlouvy, právě otevřená");
    press(Qt::Key_Down);
    EXPECT_TRUE(rows->child(0)->state().selected);
}

} // namespace fennik::test
