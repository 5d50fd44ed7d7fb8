#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/dialogs/DialogHost.h"
#include "tests/support/DialogFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

class DialogTest : public DialogFixture {
protected:
    DialogTest() : DialogFixture({1000, 700}) {
        behind.setGeometry(0, 0, 200, 30);
        behind.show();
        behind.setFocus();
    }

    DialogCard& open(QWidget* content) {
        auto* card = new DialogCard({.icon = "folder-plus",
                                     .title = "Nová složka",
                                     .subtitle = "ve složce „<b>“",
                                     .confirm = "Vytvořit"},
                                    theme, icons, &window);
        if (content != nullptr)
            card->setContent(content);
        host.open(card);
        return *card;
    }
    static QWidget* column(const std::vector<QWidget*>& widgets) {
        auto* content = new QWidget;
        auto* layout = new QVBoxLayout(content);
        for (auto* widget : widgets)
            layout->addWidget(widget);
        return content;
    }
    static QAbstractButton* button(const DialogCard& card, const char* name) {
        return card.findChild<QAbstractButton*>(name);
    }

    QLineEdit behind{&window};
};

} // namespace

TEST_F(DialogTest, keepsTheKeyboardAndGivesItBack) {
    auto* field = new QLineEdit("Faktury");
    auto* second = new QLineEdit;
    auto& card = open(column({field, second}));
    auto* cancel = button(card, "dialogCancel");
    auto* confirm = button(card, "dialogConfirm");
    EXPECT_EQ(field->selectedText(), "Faktury");
    for (QWidget* next : {static_cast<QWidget*>(second), static_cast<QWidget*>(cancel),
                          static_cast<QWidget*>(confirm), static_cast<QWidget*>(field)}) {
        press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), next);
    }
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), confirm);
    card.setConfirmable(false);
    press(Qt::Key_Tab);
    EXPECT_TRUE(card.isAncestorOf(QApplication::focusWidget()));
    host.close();
    EXPECT_EQ(QApplication::focusWidget(), &behind);
    EXPECT_FALSE(host.isVisible());
}

TEST_F(DialogTest, keysAnswer) {
    auto* field = new QLineEdit;
    auto* text = new QPlainTextEdit;
    auto& card = open(column({field, text}));
    const QSignalSpy confirmed(&card, &DialogCard::confirmed);
    const QSignalSpy cancelled(&card, &DialogCard::cancelled);
    press(Qt::Key_Return);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(confirmed.size(), 2);
    text->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 2);
    EXPECT_EQ(text->toPlainText(), "\n");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(confirmed.size(), 3);
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled.size(), 1);
    button(card, "dialogCancel")->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(cancelled.size(), 2);

    field->setFocus();
    card.setConfirmable(false);
    press(Qt::Key_Return);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(confirmed.size(), 3);
}

TEST_F(DialogTest, nothingBehindCanBeReached) {
    auto& card = open(column({new QLineEdit}));
    const QSignalSpy cancelled(&card, &DialogCard::cancelled);
    EXPECT_EQ(window.childAt(behind.geometry().center()), &host);
    QTest::mouseClick(&host, Qt::LeftButton, {}, {10, 10});
    EXPECT_TRUE(card.isAncestorOf(QApplication::focusWidget()));
    EXPECT_EQ(cancelled.size(), 0);
    EXPECT_EQ(host.card(), &card);
}

TEST_F(DialogTest, hasItsPlaceAndScrollsWhereTheWindowIsSmall) {
    auto* lower = new QLineEdit;
    auto* tall = new QWidget;
    tall->setFixedHeight(300);
    auto& card = open(column({new QLineEdit, tall, lower}));
    auto* area = card.findChild<QScrollArea*>("dialogArea");
    EXPECT_EQ(card.width(), theme.px(460));
    EXPECT_EQ(card.y(), 105);
    EXPECT_EQ(card.geometry().center().x(), 499);
    EXPECT_EQ(area->height(), area->widget()->sizeHint().height());

    window.resize(400, 330);
    EXPECT_TRUE(host.rect().contains(card.geometry()));
    EXPECT_LT(area->height(), area->widget()->height());
    EXPECT_TRUE(card.rect().contains(button(card, "dialogConfirm")->geometry()));
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), lower);
    EXPECT_FALSE(lower->visibleRegion().isEmpty());

    window.resize(1000, 900);
    const int before = card.height();
    tall->setFixedHeight(400);
    QApplication::processEvents();
    EXPECT_EQ(card.height(), before + 100);
}

TEST_F(DialogTest, anotherDialogTakesItsPlaceAndTheKeyboardStillReturns) {
    const QPointer<DialogCard> first = &open(column({new QLineEdit}));
    auto& second = open(nullptr);
    EXPECT_EQ(QApplication::focusWidget(), button(second, "dialogConfirm"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(first.isNull());
    host.close();
    EXPECT_EQ(QApplication::focusWidget(), &behind);
}

TEST_F(DialogTest, screenReadersHearADialog) {
    auto* heard = QAccessible::queryAccessibleInterface(&open(nullptr));
    EXPECT_EQ(heard->role(), QAccessible::Dialog);
    EXPECT_EQ(heard->text(QAccessible::Name), "Nová složka");
    EXPECT_EQ(heard->text(QAccessible::Description), "ve složce „<b>“");
}

} // namespace fennik::test
