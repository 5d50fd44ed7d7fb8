#include "app/model/QuickPreview.h"
#include "app/ui/PanelTable.h"
#include "app/ui/PanelView.h"
#include "app/ui/dialogs/DialogCard.h"
#include "app/ui/preview/PreviewPicture.h"
#include "app/ui/preview/PreviewTexts.h"
#include "app/ui/preview/PreviewView.h"
#include "tests/support/WindowFixture.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>

#include <string>
#include <vector>

namespace fennik::test {

namespace {

using namespace std::chrono_literals;
using app::KAction;
using app::PanelSide;

class PreviewTest : public WindowFixture {
protected:
    PreviewTest() {
        temp.folder("left");
        temp.folder("right");
        temp.file("left/a.png", "\x89PNG\r\n\x1A\n.");
        temp.file("left/b.txt", "text");
        app.start(temp.path("left"), temp.path("right"));
        settle();
        window.show();
        app.activePanel().setCursor(1);
    }
    ui::PreviewView& view() { return *window.findChild<ui::PreviewView*>(); }
    QRect inWindow(QWidget& widget) { return {widget.mapTo(&window, QPoint()), widget.size()}; }
    template <class Part>
    Part* shown(const char* name) {
        auto* part = view().findChild<Part*>(QString::fromLatin1(name));
        return part != nullptr && part->isVisible() ? part : nullptr;
    }
};

app::DecodedPicture greyPicture(int width, int height) {
    return {.width = width,
            .height = height,
            .pixels = std::vector(std::size_t(width) * std::size_t(height) * 4, std::byte{0x80}),
            .fullWidth = width,
            .fullHeight = height};
}

} // namespace

TEST_F(PreviewTest, standsInThePlaceOfTheOtherPanelAndLeavesTheKeyboard) {
    previews.answer = greyPicture(30, 20);
    app.perform(KAction::quickLook);
    settle();
    EXPECT_TRUE(view().isVisible());
    EXPECT_EQ(inWindow(view()), inWindow(window.view(PanelSide::right)));
    EXPECT_EQ(window.focusWidget(), &window.view(PanelSide::left).table());
    EXPECT_NE(shown<ui::PreviewPicture>("previewPicture"), nullptr);
    EXPECT_EQ(view().accessibleName(), QStringLiteral("Náhled, a.png"));
    EXPECT_TRUE(view().accessibleDescription().contains(QStringLiteral("Rozměry: 30 × 20")));
    window.resize(1000, 700);
    QTest::qWait(0);
    EXPECT_EQ(inWindow(view()), inWindow(window.view(PanelSide::right)));
    app.perform(KAction::escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !view().isVisible(); }));
}

TEST_F(PreviewTest, theKeyboardScrollsWhatIsLong) {
    std::string content;
    for (int i = 0; i < 1'000; ++i)
        content += "line\n";
    temp.file("left/b.txt", content);
    app.perform(KAction::quickLook);
    settle();
    auto* keys = shown<QLabel>("previewKeys");
    ASSERT_NE(keys, nullptr);
    EXPECT_FALSE(keys->text().contains("Alt+PgDn")) << "a notice has no more to show";
    QTest::keyClick(window.focusWidget(), Qt::Key_Down);
    timers.pass(1s);
    settle();
    auto* text = shown<QPlainTextEdit>("previewText");
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return keys->text().contains("Alt+PgDn"); }));
    const auto cursor = app.activePanel().cursor();
    QTest::keyClick(window.focusWidget(), Qt::Key_PageDown, Qt::AltModifier);
    const int below = text->verticalScrollBar()->value();
    EXPECT_GT(below, 5);
    QTest::keyClick(window.focusWidget(), Qt::Key_PageUp, Qt::AltModifier);
    EXPECT_LT(text->verticalScrollBar()->value(), below);
    EXPECT_EQ(app.activePanel().cursor(), cursor);
}

TEST_F(PreviewTest, aPictureIsNeverEnlarged) {
    ui::PreviewPicture picture(theme, nullptr);
    picture.resize(400, 300);
    picture.show(greyPicture(30, 20));
    const auto image = picture.grab().toImage();
    int changed = 0;
    for (int x = 0; x < image.width(); ++x)
        changed += int(image.pixel(x, image.height() / 2) != image.pixel(0, 0));
    EXPECT_NEAR(changed, 30 * image.devicePixelRatio(), 2);
}

TEST_F(PreviewTest, whatLoadsLongSaysSo) {
    app.perform(KAction::quickLook);
    EXPECT_EQ(shown<QLabel>("previewNoticeTitle"), nullptr) << "not at once";
    EXPECT_TRUE(QTest::qWaitFor([this] {
        auto* title = shown<QLabel>("previewNoticeTitle");
        return title != nullptr && title->text() == QStringLiteral("Načítám…");
    }));
    settle();
    EXPECT_EQ(shown<QLabel>("previewNoticeTitle")->text(),
              QStringLiteral("Náhled pro tento druh není"));
    EXPECT_EQ(shown<QLabel>("previewNoticeText")->accessibleName(), QStringLiteral("Nejde to."));
}

TEST_F(PreviewTest, bytesStandInLinesWithTheirPlacesAndCharacters) {
    const std::string text = "0123456789abcdef\x7F\n~";
    EXPECT_EQ(ui::PreviewTexts::hex(std::as_bytes(std::span(text)), 16).toStdString(),
              "00000000  30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66  0123456789abcdef\n"
              "00000010  7f 0a 7e                                         ..~");
}

TEST_F(PreviewTest, informationStandsOverTheOtherPanel) {
    app.perform(KAction::info);
    auto* card = window.findChild<ui::DialogCard*>();
    ASSERT_NE(card, nullptr);
    const auto panel = inWindow(window.view(PanelSide::right));
    EXPECT_NEAR(inWindow(*card).center().x(), panel.center().x(), 2);
    EXPECT_EQ(card->accessibleDescription(), QStringLiteral("Obrázek PNG"));
    auto* copy = card->findChild<QAbstractButton*>(QStringLiteral("dialogOther"));
    copy->click();
    EXPECT_EQ(clipboard.content, temp.path("left/a.png"));
    QTest::keyClick(card, Qt::Key_Escape);
    EXPECT_FALSE(app.dialog());
}

} // namespace fennik::test
