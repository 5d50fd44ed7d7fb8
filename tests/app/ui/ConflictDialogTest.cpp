#include "app/ui/dialogs/ConflictDialog.h"
#include "app/ui/dialogs/ChoiceTile.h"
#include "app/ui/dialogs/ConflictSide.h"
#include "tests/support/DialogFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QScrollArea>
#include <QTest>

#include <gtest/gtest.h>

#include <vector>

namespace fennik::test {

namespace {

using namespace ui;
using enum ConflictChoice;

class ConflictDialogTest : public DialogFixture {
protected:
    ConflictDialogTest() {
        job.title = "Kopírování 12 položek";
        job.doneFiles = 3;
        job.totalFiles = 12;
        dialog->ask(conflict, job);
        QObject::connect(dialog, &ConflictDialog::answered, &window,
                         [this](const ConflictDecision& decision) { answers.push_back(decision); });
        QObject::connect(dialog, &DialogCard::cancelled, &window, [this] { ++cancels; });
    }

    void open() { host.open(dialog); }
    void openAndWait() {
        open();
        QTest::qWait(450);
    }
    QString spoken(const char* side) {
        return dialog->findChild<ConflictSide*>(side)->accessibleName();
    }
    static QString focused() { return QApplication::focusWidget()->accessibleName(); }
    static void holdDown(int key) {
        QKeyEvent repeated(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QApplication::sendEvent(QApplication::focusWidget(), &repeated);
    }

    Conflict conflict{.source = FileUrl("/home/jana/Smlouvy/a.pdf"),
                      .destination = FileUrl("/media/Záloha/a.pdf"),
                      .sourceSize = 213'906,
                      .sourceDate = {1'795'184'760, 0},
                      .destinationSize = 211'840,
                      .destinationDate = {1'795'184'760, 0}};
    JobSnapshot job;
    ConflictDialog* dialog = new ConflictDialog(theme, icons, &window);
    std::vector<ConflictDecision> answers;
    int cancels = 0;
};

} // namespace

TEST_F(ConflictDialogTest, everyLetterGivesItsAnswer) {
    openAndWait();
    const std::pair<int, ConflictChoice> expected[] = {{Qt::Key_O, rename},
                                                       {Qt::Key_P, overwrite},
                                                       {Qt::Key_K, skip},
                                                       {Qt::Key_S, overwriteOlder}};
    for (const auto& [key, choice] : expected) {
        press(key);
        ASSERT_FALSE(answers.empty());
        EXPECT_EQ(answers.back(), (ConflictDecision{choice, false}));
    }
    press(Qt::Key_V);
    press(Qt::Key_K);
    EXPECT_EQ(answers.back(), (ConflictDecision{skip, true}));
    press(Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
    EXPECT_EQ(answers.size(), 5U);
}

TEST_F(ConflictDialogTest, arrowsWalkOverTheTilesAndEnterAnswers) {
    openAndWait();
    EXPECT_EQ(focused(), "Ponechat oba");
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), "Přepsat");
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), "Přepsat jen starší");
    press(Qt::Key_Left);
    EXPECT_EQ(focused(), "Přeskočit");
    press(Qt::Key_Return);
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].choice, skip);
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(answers.back().choice, rename);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(answers.size(), 2U);
}

TEST_F(ConflictDialogTest, typingElsewhereCannotAnswerIt) {
    open();
    for (const int key : {Qt::Key_P, Qt::Key_Return, Qt::Key_Space, Qt::Key_Right, Qt::Key_V,
                          Qt::Key_Escape, Qt::Key_Tab})
        press(key);
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(cancels, 0);
    EXPECT_EQ(focused(), "Ponechat oba");
    EXPECT_FALSE(dialog->findChild<QCheckBox*>("forAll")->isChecked());
    QTest::qWait(450);
    press(Qt::Key_P);
    EXPECT_EQ(answers.size(), 1U);
}

TEST_F(ConflictDialogTest, theNextClashBeginsAnewAndHearsAllButHeldKeys) {
    openAndWait();
    press(Qt::Key_V);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    conflict.destination = FileUrl("/media/Záloha/b.pdf");
    dialog->ask(conflict, job);
    EXPECT_EQ(dialog->accessibleName(), "„b.pdf“ už v cíli je");
    EXPECT_EQ(focused(), "Ponechat oba");
    holdDown(Qt::Key_Return);
    holdDown(Qt::Key_P);
    EXPECT_EQ(answers.size(), 1U);
    press(Qt::Key_P);
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[1], (ConflictDecision{overwrite, false}));
}

TEST_F(ConflictDialogTest, saysWhichOneIsLargerOrNewer) {
    open();
    EXPECT_EQ(dialog->accessibleName(), "„a.pdf“ už v cíli je");
    EXPECT_EQ(dialog->accessibleDescription(), "Kopírování 12 položek · hotovo 3 z 12");
    EXPECT_EQ(spoken("newItem"), "Nový, a.pdf, /home/jana/Smlouvy, 213\u202F906 B, větší, "
                                 "změněno 20. 11. 2026 15:26:00, stejné");
    EXPECT_EQ(spoken("existingItem"), "Stávající, a.pdf, /media/Záloha, 211\u202F840 B, "
                                      "změněno 20. 11. 2026 15:26:00, stejné");
    EXPECT_FALSE(dialog->findChild<QWidget*>("typeMismatch")->isVisible());

    conflict.destinationDate = {1'795'184'761, 0};
    conflict.source = FileUrl("/home/jana/Smlouvy/a.pdf/");
    conflict.typeMismatch = true;
    dialog->ask(conflict, job);
    EXPECT_TRUE(dialog->findChild<QWidget*>("typeMismatch")->isVisible());
    EXPECT_EQ(spoken("newItem"), "Nový, a.pdf, /home/jana/Smlouvy, složka, "
                                 "změněno 20. 11. 2026 15:26:00");
    EXPECT_TRUE(spoken("existingItem").endsWith("15:26:01, novější"));
}

TEST_F(ConflictDialogTest, scrollsInASmallWindowToWhatHasTheKeyboard) {
    conflict.typeMismatch = true;
    conflict.source = FileUrl("/home/jana/" + std::string(250, 'x'));
    dialog->ask(conflict, job);
    openAndWait();
    EXPECT_TRUE(host.rect().contains(dialog->geometry()));
    for (int presses = 0; presses < 6; ++presses) {
        EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty());
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(focused(), "Ponechat oba");
}

} // namespace fennik::test
