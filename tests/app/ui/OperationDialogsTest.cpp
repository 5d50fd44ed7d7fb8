#include "app/ui/SuggestionList.h"
#include "app/ui/dialogs/NewFolderDialog.h"
#include "app/ui/dialogs/PasteDialog.h"
#include "app/ui/dialogs/TransferDialog.h"
#include "app/ui/dialogs/TrashDialog.h"
#include "core/base/PathText.h"
#include "tests/support/DialogFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;
using Kind = OutcomeLine::Kind;

class OperationDialogsTest : public DialogFixture {
protected:
    static SourceItems items(int count) {
        SourceItems all{.count = count};
        for (int i = 0; i < std::min(count, 4); ++i)
            all.rows.push_back({.name = QStringLiteral("%1.pdf").arg(i), .size = "1 kB"});
        return all;
    }
    TransferDialog& transfer(std::string_view target, TransferKind kind = TransferKind::copy) {
        auto* dialog = new TransferDialog(kind, items(1), "1 kB ze složky „Smlouvy“", target, theme,
                                          icons, &window);
        host.open(dialog);
        return *dialog;
    }
    QString title() { return host.card()->accessibleName(); }
    QAbstractButton* confirm() { return host.card()->findChild<QAbstractButton*>("dialogConfirm"); }
};

} // namespace

TEST_F(OperationDialogsTest, transferStartsWithTheTargetSelectedAndSaysWhatItDoes) {
    auto& dialog = transfer("/media/Záloha", TransferKind::move);
    const QSignalSpy typed(&dialog, &TransferDialog::typed);
    QSignalSpy confirmed(&dialog, &FieldDialog::textConfirmed);
    auto* field = dialog.findChild<QLineEdit*>("targetField");
    EXPECT_EQ(title(), "Přesunout „0.pdf“");
    EXPECT_EQ(confirm()->text(), "Přesunout");
    EXPECT_EQ(focus(), field);
    EXPECT_EQ(field->selectedText(), "/media/Záloha");
    QTest::keyClicks(field, "b/");
    EXPECT_EQ(typed.size(), 2);
    press(Qt::Key_Return);
    ASSERT_EQ(confirmed.size(), 1);
    EXPECT_EQ(confirmed[0][0].toString(), "b/");
    confirm()->setFocus();
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(confirmed.size(), 2);
}

TEST_F(OperationDialogsTest, aRefusalHoldsUntilTheTextChanges) {
    auto& dialog = transfer("/media");
    QSignalSpy confirmed(&dialog, &FieldDialog::textConfirmed);
    auto* line = dialog.findChild<OutcomeLine*>("outcomeLine");
    dialog.setOutcome(Kind::error, "Sem nejde zapisovat.");
    dialog.setFreeSpace("1,72 TB");
    EXPECT_EQ(dialog.findChild<QLabel*>("freeSpace")->text(), "Volno v cíli 1,72 TB");
    EXPECT_FALSE(confirm()->isEnabled());
    EXPECT_EQ(focus()->accessibleDescription(), "Sem nejde zapisovat.");
    EXPECT_TRUE(focus()->property("invalid").toBool());
    press(Qt::Key_Return);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(confirmed.isEmpty());

    QTest::keyClicks(focus(), "x");
    EXPECT_EQ(line->text(), "");
    EXPECT_FALSE(focus()->property("invalid").toBool());
    dialog.setOutcome(Kind::creates, "Složka „x“ se vytvoří a položky půjdou do ní.");
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 1);
    static_cast<QLineEdit*>(focus())->setText("  ");
    EXPECT_FALSE(confirm()->isEnabled());
}

TEST_F(OperationDialogsTest, hearsNothingButEscapeWhileItIsBeingConfirmed) {
    auto& dialog = transfer("/media");
    const QSignalSpy cancelled(&dialog, &DialogCard::cancelled);
    dialog.setConfirming(true);
    QTest::keyClicks(focus(), "p");
    EXPECT_EQ(dialog.text(), "/media");
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled.size(), 1);
    dialog.setConfirming(false);
    QTest::keyClicks(focus(), "p");
    EXPECT_EQ(dialog.text(), "p");
}

TEST_F(OperationDialogsTest, aTargetThatWasLeftAloneKeepsItsBytes) {
    for (const std::string path : {"/mnt/s\xFF%", "/mnt/s ", "/mnt/s\nx", "/mnt/č"})
        EXPECT_EQ(pathFromStored(transfer(path).text().toStdString()), path);
    EXPECT_EQ(transfer("../vedle").text(), "../vedle");
}

TEST_F(OperationDialogsTest, keysAreAboutTheSuggestionsFirst) {
    auto& dialog = transfer("/home/jana/s");
    const QSignalSpy confirmed(&dialog, &FieldDialog::textConfirmed);
    const QSignalSpy cancelled(&dialog, &DialogCard::cancelled);
    auto* field = dialog.findChild<QLineEdit*>("targetField");
    auto* list = window.findChild<SuggestionList*>();
    const auto suggest = [&] {
        dialog.setSuggestions({"/home/jana/Směrnice", "/home/jana/Smlouvy"}, "/home/jana");
        EXPECT_TRUE(list->isVisible());
    };
    field->end(false);
    suggest();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(field->text(), "/home/jana/Smlouvy");
    EXPECT_FALSE(list->isVisible());
    EXPECT_TRUE(confirmed.isEmpty());
    field->setText("/home/jana/s");
    suggest();
    press(Qt::Key_Tab);
    EXPECT_EQ(field->text(), "/home/jana/Směrnice/");
    EXPECT_EQ(focus(), field);
    field->setText("/home/jana/s");
    suggest();
    press(Qt::Key_Escape);
    EXPECT_FALSE(list->isVisible());
    EXPECT_TRUE(cancelled.isEmpty());
    suggest();
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 1);

    press(Qt::Key_Escape);
    press(Qt::Key_Tab);
    EXPECT_EQ(focus()->objectName(), "dialogCancel");
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled.size(), 1);
}

TEST_F(OperationDialogsTest, aNewFolderNeedsANameThatWillDo) {
    auto* dialog = new NewFolderDialog("Smlouvy 2026", {}, theme, icons, &window);
    host.open(dialog);
    QSignalSpy confirmed(dialog, &FieldDialog::textConfirmed);
    EXPECT_FALSE(confirm()->isEnabled());
    press(Qt::Key_Return);
    EXPECT_TRUE(confirmed.isEmpty());
    QTest::keyClicks(focus(), "a/b");
    press(Qt::Key_Return);
    ASSERT_EQ(confirmed.size(), 1);
    EXPECT_EQ(confirmed[0][0].toString(), "a/b");
    dialog->setOutcome(Kind::error, "Složka „a“ už existuje.");
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 1);
}

TEST_F(OperationDialogsTest, theTrashAsksWithTheAnswerReady) {
    auto* dialog = new TrashDialog(items(16), "1 kB ze složky „x“", "Ctrl+Z vrátí přesun", theme,
                                   icons, &window);
    host.open(dialog);
    const QSignalSpy confirmed(dialog, &DialogCard::confirmed);
    EXPECT_EQ(title(), "Přesunout 16 položek do Koše?");
    EXPECT_EQ(dialog->findChild<SourceList*>()->accessibleName(),
              "0.pdf, 1 kB; 1.pdf, 1 kB; 2.pdf, 1 kB; 3.pdf, 1 kB; a další 12");
    EXPECT_EQ(focus(), confirm());
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 1);
    EXPECT_TRUE(dialog->asksNextTime());
    dialog->findChild<QCheckBox*>("askNoMore")->setFocus();
    press(Qt::Key_Space);
    EXPECT_FALSE(dialog->asksNextTime());
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 2);
    EXPECT_FALSE(dialog->asksNextTime());
}

TEST_F(OperationDialogsTest, titlesCountInCzech) {
    using enum PasteDialog::Origin;
    const auto paste = [this](TransferKind kind, PasteDialog::Origin origin, int count) {
        host.open(
            new PasteDialog(kind, origin, items(count), "/mnt/a", "a", theme, icons, &window));
        return title();
    };
    EXPECT_EQ(paste(TransferKind::copy, clipboard, 24), "Vložit 24 položek ze schránky?");
    EXPECT_EQ(paste(TransferKind::copy, drop, 24), "Kopírovat 24 položek?");
    EXPECT_EQ(confirm()->text(), "Kopírovat");
    EXPECT_EQ(paste(TransferKind::move, drop, 3), "Přesunout 3 položky?");
    EXPECT_EQ(confirm()->text(), "Přesunout");
    EXPECT_EQ(host.card()->findChild<SourceList*>()->accessibleName(),
              "0.pdf, 1 kB; 1.pdf, 1 kB; 2.pdf, 1 kB");
}

} // namespace fennik::test
