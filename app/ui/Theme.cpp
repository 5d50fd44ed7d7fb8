#include "app/ui/Theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPalette>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace fennik::ui {

namespace {

constexpr double basePixels = 13;

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
        .warn = "#7D4E00",
        .err = "#B02A20",
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
        .warn = "#F0BE5A",
        .err = "#FF8F82",
    };
}

/// The size the desktop asks for. Without a desktop, the toolkit's own small default says nothing.
double systemScale() {
    if (qEnvironmentVariableIsEmpty("XDG_CURRENT_DESKTOP"))
        return 1;
    const double pixels = QFontInfo(QApplication::font()).pixelSize();
    return std::clamp(pixels / basePixels, 0.85, 2.0);
}

QString firstInstalled(const QStringList& families, const QString& otherwise) {
    const auto found = std::ranges::find_if(
        families, [](const QString& family) { return QFontDatabase::hasFamily(family); });
    return found == families.end() ? otherwise : *found;
}

double pixelsOf(FontRole role) {
    switch (role) {
    case FontRole::body:
        return basePixels;
    case FontRole::detail:
        return 12.5;
    case FontRole::small:
    case FontRole::fixed:
        break;
    }
    return 11.5;
}

} // namespace

const Tokens& Tokens::of(Appearance appearance) {
    static const Tokens light = lightTokens();
    static const Tokens dark = darkTokens();
    return appearance == Appearance::light ? light : dark;
}

Theme::Theme(Appearance appearance)
    : appearance_(appearance),
      scale_(systemScale()),
      family_(firstInstalled({QStringLiteral("Inter")}, QApplication::font().family())),
      fixedFamily_(firstInstalled({QStringLiteral("DejaVu Sans Mono")},
                                  QFontDatabase::systemFont(QFontDatabase::FixedFont).family())) {
    apply();
}

void Theme::setAppearance(Appearance appearance) {
    if (appearance == appearance_)
        return;
    appearance_ = appearance;
    apply();
    emit changed();
}

QFont Theme::font(FontRole role, QFont::Weight weight) const {
    QFont font(role == FontRole::fixed ? fixedFamily_ : family_);
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
    QApplication::setPalette(palette);
    QApplication::setFont(font(FontRole::body));
}

QString Theme::styleSheet() const {
    const auto& colours = tokens();
    return QStringLiteral(R"(
        QMenu { background: %1; color: %2; border: 1px solid %3; padding: 4px; }
        QMenu::item { padding: 5px 24px 5px 24px; border-radius: 5px; }
        QMenu::item:selected { background: %4; color: %5; }
        QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }
        QScrollBar::handle:vertical { background: %6; border-radius: 3px; min-height: 32px; margin: 2px; }
        QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
        QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
    )")
        .arg(colours.raised.name(), colours.text.name(), colours.line.name(), colours.accent.name(),
             colours.onAccent.name(), colours.control.name());
}

Appearance appearanceOf(const QPalette& systemPalette) {
    const bool isDark = systemPalette.color(QPalette::Window).lightness() <
                        systemPalette.color(QPalette::WindowText).lightness();
    return isDark ? Appearance::dark : Appearance::light;
}

} // namespace fennik::ui
