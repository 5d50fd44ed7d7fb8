#include "app/ui/Theme.h"

#include "app/ui/WindowStyle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPalette>
#include <QScreen>
#include <QStyle>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double basePixels = 13;
constexpr int lineHeight = 16; // of a row's text at the default size

Tokens lightTokens() {
    return {
        .window = "#E9E7E2",
        .chrome = "#F5F3EF",
        .panel = "#FFFFFF",
        .panelInactive = "#FAF9F6",
        .field = "#FFFFFF",
        .raised = "#FFFFFF",
        .hover = "#EFECE6",
        .pressed = "#E4E0D8",
        .line = "#DCD8D0",
        .control = "#8A8377",
        .text = "#1E1C19",
        .text2 = "#58534B",
        .text3 = "#6B655C",
        .accent = "#2257C4",
        .onAccent = "#FFFFFF",
        .onAccent2 = "#DCE6FB",
        .accentText = "#1F51B8",
        .accentSoft = "#E3EBFA",
        .progress = "#2257C4",
        .mark = "#96450A",
        .markSoft = "#FDF0DC",
        .markOnAccent = "#FFDDA3",
        .markSolid = "#C25E0E",
        .ok = "#1B6B43",
        .okSoft = "#E0F2E8",
        .warn = "#7D4E00",
        .warnSoft = "#FCF0D4",
        .err = "#B02A20",
        .errSoft = "#FBE6E3",
        .scrim = QColor::fromRgbF(38 / 255.F, 34 / 255.F, 28 / 255.F, .34F),
        .shadow = QColor::fromRgbF(40 / 255.F, 32 / 255.F, 20 / 255.F, .20F),
    };
}

Tokens darkTokens() {
    return {
        .window = "#121110",
        .chrome = "#1D1C1A",
        .panel = "#1F1E1C",
        .panelInactive = "#181716",
        .field = "#151413",
        .raised = "#262422",
        .hover = "#2B2926",
        .pressed = "#35322E",
        .line = "#35322E",
        .control = "#7D776D",
        .text = "#F0EDE7",
        .text2 = "#B8B2A8",
        .text3 = "#9A948A",
        .accent = "#2D63D4",
        .onAccent = "#FFFFFF",
        .onAccent2 = "#EAF0FF",
        .accentText = "#8DB2FF",
        .accentSoft = "#1E2B47",
        .progress = "#5F8FF2",
        .mark = "#FFB65C",
        .markSoft = "#38291A",
        .markOnAccent = "#FFE9C2",
        .markSolid = "#E28A2B",
        .ok = "#6FCF9B",
        .okSoft = "#17301F",
        .warn = "#F0BE5A",
        .warnSoft = "#352A12",
        .err = "#FF8F82",
        .errSoft = "#3B1D1A",
        .scrim = QColor::fromRgbF(0, 0, 0, .44F),
        .shadow = QColor::fromRgbF(0, 0, 0, .55F),
    };
}

Tokens highContrast(Tokens tokens) {
    for (auto* line : {&tokens.line, &tokens.control})
        *line = tokens.text;
    for (auto* soft : {&tokens.accentSoft, &tokens.markSoft, &tokens.okSoft, &tokens.warnSoft,
                       &tokens.errSoft, &tokens.panelInactive})
        *soft = tokens.panel;
    return tokens;
}

/// The size the desktop asks for. Without a desktop, the toolkit's own small default says nothing.
double systemScale() {
    if (qEnvironmentVariableIsEmpty("XDG_CURRENT_DESKTOP"))
        return 1;
    const double pixels = QFontInfo(QApplication::font()).pixelSize();
    return pixels / basePixels;
}

int rowHeightOf(app::Density density) {
    switch (density) {
    case app::Density::compact:
        return 20;
    case app::Density::regular:
        return 24;
    case app::Density::comfortable:
        break;
    }
    return 30;
}

double pixelsOf(FontRole role) {
    switch (role) {
    case FontRole::body:
    case FontRole::fixedField:
        return basePixels;
    case FontRole::detail:
        return 12.5;
    case FontRole::fixedLine:
        return 12;
    case FontRole::title:
        return 15.5;
    case FontRole::headline:
        return 19.5;
    case FontRole::small:
    case FontRole::fixed:
        break;
    }
    return 11.5;
}

} // namespace

const Tokens& Tokens::of(Appearance appearance, Contrast contrast) {
    static const std::array normal{lightTokens(), darkTokens()};
    static const std::array high{highContrast(normal[0]), highContrast(normal[1])};
    const std::size_t index = appearance == Appearance::light ? 0 : 1;
    return contrast == Contrast::normal ? normal[index] : high[index];
}

Theme::Theme(Appearance appearance, std::optional<double> textScale)
    : appearance_(appearance),
      scale_(std::clamp(textScale ? *textScale : systemScale(), leastTextScale, mostTextScale)),
      families_{QStringLiteral("Inter"), QApplication::font().family()},
      fixedFamilies_{QStringLiteral("DejaVu Sans Mono"),
                     QFontDatabase::systemFont(QFontDatabase::FixedFont).family()} {
    apply();
}

void Theme::setAppearance(Appearance appearance) {
    if (appearance == appearance_)
        return;
    appearance_ = appearance;
    apply();
    emit changed();
}

void Theme::setContrast(Contrast contrast) {
    if (contrast == contrast_)
        return;
    contrast_ = contrast;
    apply();
    emit changed();
}

void Theme::setDensity(app::Density density) {
    if (density == density_)
        return;
    density_ = density;
    emit changed();
}

int Theme::rowHeight() const {
    // What stands above and below a line does not grow with the text.
    return rowHeightOf(density_) + px(lineHeight) - lineHeight;
}

QFont Theme::font(FontRole role, QFont::Weight weight) const {
    const bool isFixed =
        role == FontRole::fixed || role == FontRole::fixedLine || role == FontRole::fixedField;
    QFont font(isFixed ? fixedFamilies_ : families_);
    // Half pixels matter at these sizes, and only sizes in points may be fractions.
    constexpr double pointsPerInch = 72;
    const double dotsPerInch = QGuiApplication::primaryScreen()->logicalDotsPerInchY();
    font.setPointSizeF(pixelsOf(role) * scale_ * pointsPerInch / dotsPerInch);
    font.setWeight(weight);
    return font;
}

bool Theme::reducedMotion() {
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}

void Theme::setReducedMotion(bool isReduced) {
    auto* style = qobject_cast<WindowStyle*>(QApplication::style());
    if (style == nullptr)
        QApplication::setStyle(style = new WindowStyle);
    style->setReducedMotion(isReduced);
}

void Theme::apply() const {
    const auto& colours = tokens();
    QPalette palette;
    palette.setColor(QPalette::Window, colours.window);
    palette.setColor(QPalette::WindowText, colours.text);
    palette.setColor(QPalette::Base, colours.panel);
    palette.setColor(QPalette::AlternateBase, colours.panelInactive);
    palette.setColor(QPalette::Text, colours.text);
    palette.setColor(QPalette::Button, colours.chrome);
    palette.setColor(QPalette::ButtonText, colours.text);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    palette.setColor(QPalette::ToolTipBase, colours.raised);
    palette.setColor(QPalette::ToolTipText, colours.text);
    palette.setColor(QPalette::PlaceholderText, colours.text3);
    palette.setColor(QPalette::Mid, colours.control);
    QApplication::setPalette(palette);
    QApplication::setFont(font(FontRole::body));
}

Appearance appearanceOf(const QPalette& systemPalette) {
    const bool isDark = systemPalette.color(QPalette::Window).lightness() <
                        systemPalette.color(QPalette::WindowText).lightness();
    return isDark ? Appearance::dark : Appearance::light;
}

} // namespace fennik::ui
