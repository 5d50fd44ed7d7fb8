#include "app/ui/Text.h"
#include "app/ui/FileLook.h"
#include "app/ui/PanelTableModel.h"
#include "app/ui/PlatformWords.h"
#include "app/ui/TabularText.h"

#include <gtest/gtest.h>

#include <limits>

namespace fennik::test {

using namespace ui;

TEST(TextTest, datesAreCzechAndInLocalTime) {
    const Date summer{1'784'120'400, 0}; // 2026-07-15 13:00 UTC
    EXPECT_EQ(czechDate(summer, DateDetail::minutes), "15. 7. 2026 15:00");
    EXPECT_EQ(czechDate(summer, DateDetail::seconds), "15. 7. 2026 15:00:00");
    EXPECT_EQ(czechDate({0, 0}, DateDetail::minutes), "1. 1. 1970 1:00");
    EXPECT_EQ(czechDate(Date::distantPast(), DateDetail::minutes), "");
    EXPECT_EQ(czechDate({std::numeric_limits<std::int64_t>::max(), 0}, DateDetail::minutes), "");
    EXPECT_EQ(czechDate({-62'000'000'000, 0}, DateDetail::minutes).left(10), "19. 4. 000");
}

TEST(TextTest, onlyWordsTooLongForALineAreBroken) {
    const auto sentence = QStringLiteral("„Smlouva.pdf“ už ve složce je, na desktopu-notebooku.");
    EXPECT_EQ(breakableText(sentence), sentence);
    const auto name = QString(100, QLatin1Char('x')) + QStringLiteral("🦊🦊č̌🦊.txt");
    const auto broken = breakableText(name).split(QChar(0x200B));
    EXPECT_EQ(broken.join(QString()), name);
    for (const auto& piece : broken) {
        EXPECT_LE(piece.size(), 24);
        EXPECT_FALSE(piece.front().isLowSurrogate() || piece.front().isMark());
    }
}

TEST(TextTest, digitsHaveOneWidth) {
    const QFont font(QStringLiteral("Inter"));
    EXPECT_DOUBLE_EQ(TabularText::width(font, QStringLiteral("11:11")),
                     TabularText::width(font, QStringLiteral("80:48")));
}

TEST(TextTest, wordsOfAKindFollowTheItem) {
    EXPECT_EQ(kindText({.name = "a.PDF"}), "dokument PDF");
    EXPECT_EQ(kindText({.name = "x.pdf", .kind = FileKind::directory}), "složka");
    EXPECT_EQ(kindText({.name = "l", .kind = FileKind::symlink}), "odkaz");
    EXPECT_EQ(kindText({.name = "l", .kind = FileKind::symlink, .linksToDirectory = true}),
              "odkaz na složku");
    EXPECT_EQ(kindText({.name = "p", .kind = FileKind::other}), "zvláštní soubor");
    EXPECT_EQ(kindText(FileItem::parentEntry(FileUrl("/a")).view()), "nadřazená složka");
}

TEST(TextTest, onlyTheSentenceAboutTheMacIsSaidDifferently) {
    using FolderOpener::Failure;
    const auto denied = Failure::noPermission(FileUrl("/x/Pošta"));
    EXPECT_EQ(PlatformWords::failureMessage(denied),
              "Složku „Pošta“ nejde otevřít: nemáte k ní přístup.");
    const auto missing = Failure::notFound(FileUrl("/x"));
    EXPECT_EQ(PlatformWords::failureMessage(missing).toStdString(), missing.message());
}

TEST(TextTest, countsTakeTheRightForm) {
    EXPECT_EQ(itemCount(1), "1 položka");
    EXPECT_EQ(itemCount(3), "3 položky");
    EXPECT_EQ(itemCount(1204), "1\u202F204 položek");
}

} // namespace fennik::test
