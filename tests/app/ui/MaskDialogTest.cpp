#include "app/ui/dialogs/MaskDialog.h"
#include "app/ui/dialogs/Chip.h"
#include "app/ui/dialogs/OutcomeLine.h"
#include "tests/support/DialogFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;

class MaskDialogTest : public DialogFixture {
protected:
    MaskDialogTest() : DialogFixture({900, 600}) {}

    MaskDialog& open(const QStringList& recents) {
        auto* dialog = new MaskDialog(MaskDialog::Purpose::mark, "Smlouvy 2026 · 23 položek",
                                      recents, theme, icons, &window);
        host.open(dialog);
        field = dialog->findChild<QLineEdit*>("maskField");
        return *dialog;
    }

    QLineEdit* field = nullptr;
};

} // namespace

TEST_F(MaskDialogTest, startsWithTheLastMaskSelectedAndTakesAnotherOne) {
    auto& dialog = open({"*.pdf", "*.jpg; *.png", "*/"});
    const QSignalSpy changed(&dialog, &MaskDialog::maskChanged);
    QSignalSpy confirmed(&dialog, &MaskDialog::maskConfirmed);
    EXPECT_EQ(field->selectedText(), "*.pdf");
    QTest::keyClicks(field, "*.txt");
    EXPECT_EQ(dialog.mask(), "*.txt");
    EXPECT_EQ(changed.size(), 5);
    press(Qt::Key_Return);
    ASSERT_EQ(confirmed.size(), 1);
    EXPECT_EQ(confirmed[0][0].toString(), "*.txt");

    field->clear();
    press(Qt::Key_Return);
    EXPECT_EQ(confirmed.size(), 1);
}

TEST_F(MaskDialogTest, chipsAndArrowsBringRecentMasks) {
    auto& dialog = open({"*.pdf", "*.jpg; *.png", "*/", "4", "5", "6"});
    const auto chips = dialog.findChildren<Chip*>();
    EXPECT_EQ(chips.size(), 5);
    QTest::mouseClick(chips[1], Qt::LeftButton);
    EXPECT_EQ(field->selectedText(), "*.jpg; *.png");
    EXPECT_EQ(QApplication::focusWidget(), field);
    press(Qt::Key_Down);
    EXPECT_EQ(field->text(), "*/");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(field->text(), "*.pdf");
    QTest::keyClicks(field, "x");
    press(Qt::Key_Down);
    EXPECT_EQ(field->text(), "*.pdf");
}

TEST_F(MaskDialogTest, saysWhatMatchesInTheRightForm) {
    auto& dialog = open({});
    const auto* line = dialog.findChild<OutcomeLine*>("outcomeLine");
    const auto said = [&](std::int64_t count, const QString& size) {
        dialog.setMatches(count, size);
        EXPECT_EQ(field->accessibleDescription(), line->text());
        return line->text();
    };
    EXPECT_EQ(said(0, {}), "Neodpovídá žádná položka");
    EXPECT_EQ(said(1, "4 B"), "Odpovídá 1 položka, 4 B");
    EXPECT_EQ(said(2, "4,5 MB"), "Odpovídají 2 položky, 4,5 MB");
    EXPECT_EQ(said(5, {}), "Odpovídá 5 položek");
}

TEST_F(MaskDialogTest, staysUsableWithAMonstrousMask) {
    const auto monstrous = QString("*.<b>;").repeated(2000);
    auto& dialog = open({monstrous, "*/"});
    EXPECT_EQ(dialog.mask(), monstrous);
    EXPECT_EQ(dialog.width(), theme.px(460));
    for (const auto* chip : dialog.findChildren<Chip*>())
        EXPECT_TRUE(chip->isVisible());
}

} // namespace fennik::test
