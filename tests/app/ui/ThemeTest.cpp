#include "app/ui/Theme.h"

#include <gtest/gtest.h>

#include <cmath>

namespace fennik::test {

namespace {

using ui::Appearance;
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

class ContrastTest : public testing::TestWithParam<Appearance> {};

INSTANTIATE_TEST_SUITE_P(Themes, ContrastTest, testing::Values(Appearance::light, Appearance::dark),
                         [](const auto& tested) {
                             return tested.param == Appearance::light ? "light" : "dark";
                         });

TEST_P(ContrastTest, everyTextCanBeReadAndEveryShapeSeen) {
    const auto& tokens = Tokens::of(GetParam());
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
        {tokens.accent, tokens.panel, 3},
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

} // namespace fennik::test
