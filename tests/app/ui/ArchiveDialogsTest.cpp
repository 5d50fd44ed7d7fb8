#include "app/ui/dialogs/ExtractDialog.h"
#include "app/ui/dialogs/LevelSlider.h"
#include "app/ui/dialogs/PackDialog.h"
#include "app/ui/dialogs/PasswordDialog.h"
#include "app/ui/dialogs/PasswordField.h"
#include "app/ui/dialogs/SegmentedControl.h"
#include "tests/support/DialogFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScrollArea>
#include <QTest>

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

using namespace ui;
using Kind = OutcomeLine::Kind;
using Place = app::PackAnswer::Place;

class ArchiveDialogsTest : public DialogFixture {
protected:
    static SourceItems items(int count) {
        SourceItems all{.count = count};
        for (int i = 0; i < std::min(count, 4); ++i)
            all.rows.push_back({.name = QStringLiteral("%1.zip").arg(i), .size = "1 kB"});
        return all;
    }
    static app::PackDialog question(const std::string& stem) {
        return {.here = FileUrl("/home/jana/Smlouvy 2026"),
                .other = FileUrl("/media/Záloha"),
                .answer = {.name = stem + ".zip"}};
    }
    PackDialog& pack(const app::PackDialog& asked) {
        auto* dialog = new PackDialog(asked, items(4), "5,14 MB ze složky „Smlouvy 2026“", theme,
                                      icons, &window);
        QObject::connect(dialog, &PackDialog::answerChanged, &window,
                         [this](const auto& answer) { changed.push_back(answer); });
        QObject::connect(dialog, &PackDialog::answerConfirmed, &window,
                         [this](const auto& answer) { confirmed.push_back(answer); });
        host.open(dialog);
        return *dialog;
    }
    template <class Part>
    Part& part(const char* name) {
        return *host.card()->findChild<Part*>(name);
    }
    QString title() { return host.card()->accessibleName(); }
    QAbstractButton& confirm() { return part<QAbstractButton>("dialogConfirm"); }
    static void type(const QString& text) { QTest::keyClicks(focus(), text); }

    std::vector<app::PackAnswer> changed;
    std::vector<app::PackAnswer> confirmed;
};

} // namespace

TEST_F(ArchiveDialogsTest, theKeyboardReachesEveryChoiceOfANewArchive) {
    pack(question("Smlouvy 2026"));
    EXPECT_EQ(title(), "Zabalit 4 položky");
    EXPECT_EQ(focus(), &part<QLineEdit>("archiveName"));
    EXPECT_EQ(part<QLineEdit>("archiveName").selectedText(), "Smlouvy 2026");
    press(Qt::Key_Tab);
    EXPECT_EQ(focus()->accessibleName(), "ZIP");
    auto* heard = QAccessible::queryAccessibleInterface(focus());
    EXPECT_EQ(heard->role(), QAccessible::RadioButton);
    EXPECT_EQ(heard->parent()->text(QAccessible::Name), "Formát");
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    EXPECT_EQ(focus()->accessibleName(), "7z");
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), &part<LevelSlider>("packLevel"));
    press(Qt::Key_End);
    press(Qt::Key_Left);
    press(Qt::Key_Tab);
    EXPECT_EQ(focus()->accessibleName(), "Sem, Smlouvy 2026");
    press(Qt::Key_Right);
    EXPECT_EQ(focus()->accessibleName(), "Do druhého panelu, Záloha");
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), &part<QCheckBox>("skipJunk")); // no password in this format
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    ASSERT_EQ(confirmed.size(), 1U);
    EXPECT_EQ(confirmed[0].name, "Smlouvy 2026.7z");
    EXPECT_EQ(confirmed[0].place, Place::other);
    EXPECT_EQ(confirmed[0].options.format, ArchiveFormat::sevenZip);
    EXPECT_EQ(confirmed[0].options.level, 8);
    EXPECT_FALSE(confirmed[0].options.skipJunk);
    EXPECT_EQ(changed.back().name, confirmed[0].name);
}

TEST_F(ArchiveDialogsTest, theNameKeepsItsBytesAndGetsItsExtensionOnce) {
    auto& dialog = pack(question("c\xE9"));
    EXPECT_EQ(dialog.answer().name, "c\xE9.zip");
    part<SegmentedControl>("archiveFormat").choose(2);
    EXPECT_EQ(changed.back().name, "c\xE9.tar.gz");
    type("zaloha.TAR.GZ");
    EXPECT_EQ(changed.back().name, "zaloha.TAR.GZ");
    press(Qt::Key_A, Qt::ControlModifier);
    type(".tar.gz");
    EXPECT_EQ(changed.back().name, ".tar.gz.tar.gz"); // an archive without a name would be hidden
    press(Qt::Key_A, Qt::ControlModifier);
    type(" ");
    EXPECT_FALSE(confirm().isEnabled());
    press(Qt::Key_Return);
    EXPECT_TRUE(confirmed.empty());
}

TEST_F(ArchiveDialogsTest, aTakenNameIsRefusedUntilSomethingChanges) {
    auto& dialog = pack(question("x"));
    dialog.setOutcome(Kind::error, "„x.zip“ už ve složce je.");
    EXPECT_FALSE(confirm().isEnabled());
    EXPECT_EQ(focus()->accessibleDescription(), "„x.zip“ už ve složce je.");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(confirmed.empty());
    part<SegmentedControl>("packPlace").choose(1);
    EXPECT_EQ(changed.back().place, Place::other);
    dialog.setOutcome(Kind::note, {});
    EXPECT_TRUE(confirm().isEnabled());
}

TEST_F(ArchiveDialogsTest, aPasswordIsRepeatedAndOnlyForZip) {
    auto& dialog = pack(question("x"));
    auto& password = part<PasswordField>("packPassword");
    auto& repeated = part<PasswordField>("packPasswordAgain");
    auto& said = part<OutcomeLine>("aboutPassword");
    password.setFocus();
    type("tajne");
    EXPECT_EQ(said.text(), "Hesla se neshodují.");
    EXPECT_EQ(said.kind(), Kind::note);
    EXPECT_FALSE(confirm().isEnabled());
    press(Qt::Key_Tab);
    EXPECT_EQ(focus(), &repeated);
    type("tajna");
    EXPECT_EQ(said.kind(), Kind::error);
    EXPECT_TRUE(repeated.property("invalid").toBool());
    dialog.setOutcome(Kind::note, {}); // about the name
    EXPECT_FALSE(confirm().isEnabled());
    press(Qt::Key_Backspace);
    type("e");
    EXPECT_EQ(said.text(), "");
    EXPECT_TRUE(confirm().isEnabled());
    EXPECT_EQ(dialog.answer().options.password, "tajne");

    press(Qt::Key_Tab);
    EXPECT_EQ(focus()->accessibleName(), "Ukázat heslo");
    EXPECT_EQ(repeated.displayText().contains("tajne"), false);
    press(Qt::Key_Space);
    EXPECT_EQ(password.displayText(), "tajne");
    EXPECT_EQ(repeated.displayText(), "tajne");

    repeated.clear();
    part<SegmentedControl>("archiveFormat").choose(1);
    EXPECT_FALSE(password.isEnabled());
    EXPECT_EQ(said.text(), "Heslo umí jen formát ZIP.");
    EXPECT_EQ(dialog.answer().options.password, "");
    EXPECT_TRUE(confirm().isEnabled());
    part<SegmentedControl>("archiveFormat").choose(0);
    EXPECT_EQ(password.text(), "tajne");
    EXPECT_FALSE(confirm().isEnabled());
}

TEST_F(ArchiveDialogsTest, whatWasChosenIsThereAgainAfterAnInterruption) {
    const app::PackAnswer before{.name = "a.b.zip",
                                 .place = Place::other,
                                 .options = {.level = 0, .password = "heslo", .skipJunk = false}};
    auto asked = question("x");
    asked.answer = before;
    const auto after = pack(asked).answer();
    EXPECT_EQ(part<QLineEdit>("archiveName").text(), "a.b");
    EXPECT_EQ(after.name, before.name);
    EXPECT_EQ(after.place, before.place);
    EXPECT_EQ(after.options.level, 0);
    EXPECT_EQ(after.options.password, "heslo");
    EXPECT_FALSE(after.options.skipJunk);
    EXPECT_TRUE(confirm().isEnabled());
}

TEST_F(ArchiveDialogsTest, withoutAnotherFolderThereIsOnlyThisOne) {
    auto asked = question("x");
    asked.other = std::nullopt;
    pack(asked);
    for (int i = 0; i < 3; ++i)
        press(Qt::Key_Tab);
    EXPECT_EQ(focus()->accessibleName(), "Sem, Smlouvy 2026");
    press(Qt::Key_Right);
    EXPECT_EQ(focus()->accessibleName(), "Sem, Smlouvy 2026");
    EXPECT_EQ(part<SegmentedControl>("packPlace").chosen(), 0);
}

TEST_F(ArchiveDialogsTest, theLevelIsSaidInWordsAndTheMouseMovesItToo) {
    pack(question("x"));
    auto& level = part<LevelSlider>("packLevel");
    const auto says = [&](const char* text) {
        for (const auto* label : host.card()->findChildren<QLabel*>()) {
            if (label->text() == text && label->font().weight() == QFont::DemiBold)
                return true;
        }
        return false;
    };
    EXPECT_TRUE(says("6 · běžná"));
    QTest::mouseClick(&level, Qt::LeftButton, {}, {1, 12});
    EXPECT_TRUE(says("0 · jen uložit"));
    QTest::mousePress(&level, Qt::LeftButton, {}, {level.width() / 9, 12});
    EXPECT_TRUE(says("1 · nejrychlejší"));
    QTest::mouseMove(&level, {level.width() + 50, 12});
    QTest::mouseRelease(&level, Qt::LeftButton, {}, {level.width() + 50, 12});
    EXPECT_TRUE(says("9 · nejmenší"));
    level.setFocus();
    press(Qt::Key_Left);
    EXPECT_TRUE(says("8"));
}

TEST_F(ArchiveDialogsTest, aSmallWindowScrollsToWhatHasTheKeyboard) {
    pack(question(std::string(200, 'x')));
    EXPECT_TRUE(host.rect().contains(host.card()->geometry()));
    EXPECT_TRUE(host.card()->rect().contains(confirm().geometry()));
    auto& skipJunk = part<QCheckBox>("skipJunk");
    EXPECT_TRUE(skipJunk.visibleRegion().isEmpty());
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focus(), &skipJunk);
    EXPECT_FALSE(skipJunk.visibleRegion().isEmpty());
    window.resize(1440, 900);
    const auto& area = part<QScrollArea>("dialogArea");
    EXPECT_GE(area.height(), area.widget()->height());
}

TEST_F(ArchiveDialogsTest, archivesAreUnpackedEachIntoAFolderOfItsOwnOrNot) {
    const auto ask = [this](int count) -> ExtractDialog& {
        auto* dialog = new ExtractDialog(items(count), "183 MB", "/media/Záloha",
                                         ExtractDialog::OwnFolder::yes, theme, icons, &window);
        host.open(dialog);
        return *dialog;
    };
    ask(1);
    EXPECT_EQ(title(), "Rozbalit „0.zip“");
    ask(5);
    EXPECT_EQ(title(), "Rozbalit 5 archivů");
    auto& dialog = ask(2);
    EXPECT_EQ(title(), "Rozbalit 2 archivy");
    EXPECT_TRUE(dialog.usesOwnFolder());
    EXPECT_EQ(part<QLineEdit>("targetField").selectedText(), "/media/Záloha");
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_FALSE(dialog.usesOwnFolder());

    auto* entries =
        new ExtractDialog("a.zip", items(3), "183 MB", "/media/Záloha", theme, icons, &window);
    host.open(entries);
    EXPECT_EQ(title(), "Rozbalit 3 položky z „a.zip“");
    EXPECT_EQ(entries->findChild<QCheckBox*>(), nullptr);
    EXPECT_FALSE(entries->usesOwnFolder());
}

TEST_F(ArchiveDialogsTest, aWrongPasswordStandsSelectedUntilAnotherOneIsTyped) {
    auto* dialog = new PasswordDialog("výplaty.zip", "AES-256", theme, icons, &window);
    host.open(dialog);
    std::vector<QString> given;
    QObject::connect(dialog, &FieldDialog::textConfirmed, &window,
                     [&](const QString& text) { given.push_back(text); });
    EXPECT_EQ(title(), "Archiv je chráněný heslem.");
    EXPECT_EQ(dialog->accessibleDescription(), "výplaty.zip · AES-256");
    EXPECT_FALSE(confirm().isEnabled());
    type("  "); // which may be somebody's password
    press(Qt::Key_Return);
    EXPECT_EQ(given, std::vector<QString>{"  "});
    dialog->showWrong("  ");
    EXPECT_EQ(focus()->accessibleDescription(), "Špatné heslo.");
    press(Qt::Key_Return);
    EXPECT_EQ(given.size(), 1U);
    type("b"); // in the place of the wrong one
    EXPECT_EQ(focus()->accessibleDescription(), "");
    press(Qt::Key_Return);
    EXPECT_EQ(given.back(), "b");
}

} // namespace fennik::test
