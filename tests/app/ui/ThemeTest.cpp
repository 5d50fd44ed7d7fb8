#include "app/ui/Theme.h"

#include "app/ui/StyleSheet.h"

#include <QLineEdit>
#include <QStyle>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

namespace fennik::test {

namespace {

using ui::Appearance;
using ui::Contrast;
using ui::Tokens;

/// Relative luminance and contrast as WCAG 2.1 defines them.
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

class ContrastTest : public testing::TestWithParam<std::tuple<Appearance, Contrast>> {};

INSTANTIATE_TEST_SUITE_P(Themes, ContrastTest,
                         testing::Combine(testing::Values(Appearance::light, Appearance::dark),
                                          testing::Values(Contrast::normal, Contrast::high)));

TEST_P(ContrastTest, everyTextCanBeReadAndEveryShapeSeen) {
    const auto [appearance, level] = GetParam();
    const auto& tokens = Tokens::of(appearance, level);
    struct Pair {
        QColor front;
        QColor back;
        double least;
    };
    const std::vector<Pair> pairs{
        {tokens.text, tokens.panel, 4.5},
        {tokens.text, tokens.panelInactive, 4.5},
        {tokens.text, tokens.raised, 4.5},
        {tokens.text, tokens.field, 4.5},
        {tokens.text, tokens.accentSoft, 4.5},
        {tokens.text, tokens.window, 4.5},
        {tokens.text, tokens.chrome, 4.5},
        {tokens.text, tokens.hover, 4.5},
        {tokens.text, tokens.pressed, 4.5},
        {tokens.text2, tokens.window, 4.5},
        {tokens.text2, tokens.hover, 4.5},
        {tokens.text3, tokens.field, 4.5},
        {tokens.accentText, tokens.chrome, 4.5},
        {tokens.mark, tokens.panel, 4.5},
        {tokens.warn, tokens.raised, 4.5},
        {tokens.progress, tokens.pressed, 3},
        {tokens.accent, tokens.chrome, 3},
        {tokens.control, tokens.chrome, 3},
        {tokens.text2, tokens.panel, 4.5},
        {tokens.text2, tokens.panelInactive, 4.5},
        {tokens.text2, tokens.chrome, 4.5},
        {tokens.text2, tokens.field, 4.5},
        {tokens.text2, tokens.accentSoft, 4.5},
        {tokens.text3, tokens.panel, 4.5},
        {tokens.text3, tokens.panelInactive, 4.5},
        {tokens.text3, tokens.window, 4.5},
        {tokens.text3, tokens.accentSoft, 4.5},
        {tokens.text3, tokens.raised, 4.5},
        {tokens.onAccent, tokens.accent, 4.5},
        {tokens.onAccent2, tokens.accent, 4.5},
        {tokens.accentText, tokens.accentSoft, 4.5},
        {tokens.accentText, tokens.panel, 4.5},
        {tokens.accentText, tokens.raised, 4.5},
        {tokens.text2, tokens.raised, 4.5},
        {tokens.text3, tokens.chrome, 4.5},
        {tokens.mark, tokens.markSoft, 4.5},
        {tokens.text, tokens.markSoft, 4.5},
        {tokens.text2, tokens.markSoft, 4.5},
        {tokens.markOnAccent, tokens.accent, 4.5},
        {tokens.ok, tokens.okSoft, 4.5},
        {tokens.warn, tokens.warnSoft, 4.5},
        {tokens.err, tokens.errSoft, 4.5},
        {tokens.ok, tokens.raised, 4.5},
        {tokens.err, tokens.raised, 4.5},
        {tokens.markSolid, tokens.chrome, 3},
        {tokens.accent, tokens.panel, 3},
        {tokens.accent, tokens.field, 3},
        {tokens.control, tokens.raised, 3},
        {tokens.control, tokens.panel, 3},
        {tokens.control, tokens.panelInactive, 3},
        {tokens.control, tokens.field, 3},
        {tokens.warn, tokens.hover, 3},
        {tokens.err, tokens.hover, 3},
    };
    for (const auto& [front, back, least] : pairs)
        EXPECT_GE(contrast(front, back), least)
            << front.name().toStdString() << " on " << back.name().toStdString();
}

TEST(ThemeTest, highContrastHasStrongLinesAndNoTints) {
    for (const auto appearance : {Appearance::light, Appearance::dark}) {
        const auto& tokens = Tokens::of(appearance, Contrast::high);
        for (const auto& strong : {tokens.line, tokens.control})
            EXPECT_EQ(strong, tokens.text);
        for (const auto& soft :
             {tokens.accentSoft, tokens.markSoft, tokens.okSoft, tokens.warnSoft, tokens.errSoft})
            EXPECT_EQ(soft, tokens.panel);
    }
}

TEST(ThemeTest, motionIsReducedAndComesBackForAllOfTheApplication) {
    const auto usual = ui::Theme::reducedMotion();
    ui::Theme::setReducedMotion(true);
    EXPECT_TRUE(ui::Theme::reducedMotion());
    ui::Theme::setReducedMotion(false);
    EXPECT_EQ(ui::Theme::reducedMotion(), usual);
}

TEST(ThemeTest, measuresGrowWithTheTextWithinLimits) {
    EXPECT_EQ(ui::Theme(Appearance::light, 1.5).px(20), 30);
    EXPECT_EQ(ui::Theme(Appearance::light, 3).px(20), 40);
    EXPECT_EQ(ui::Theme(Appearance::light, 0.5).px(20), 17);
}

TEST(ThemeTest, aFieldStaysInItsPlaceWhenItsBorderGrows) {
    const ui::Theme theme(Appearance::light);
    QWidget window;
    ui::wear(window, theme, ui::StyleSheet::all);
    QLineEdit field(&window);
    QLineEdit other(&window);
    field.setText(QStringLiteral("*.pdf"));
    field.setGeometry(10, 10, 300, field.sizeHint().height());
    window.resize(320, 120);
    const auto look = [&] {
        const QColor border = field.grab().toImage().pixelColor(150, 1);
        const auto cursor = field.inputMethodQuery(Qt::ImCursorRectangle).toRect();
        return std::tuple(field.sizeHint().height(), cursor, border);
    };
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    other.setFocus();
    const auto [height, cursor, border] = look();
    EXPECT_EQ(height, theme.px(32));
    EXPECT_EQ(border, theme.tokens().field);
    field.setFocus();
    EXPECT_EQ(look(), std::tuple(height, cursor, theme.tokens().accent));
    field.setProperty("invalid", true);
    field.style()->polish(&field);
    EXPECT_EQ(look(), std::tuple(height, cursor, theme.tokens().err));
}

} // namespace fennik::test
