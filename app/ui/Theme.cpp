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

QString firstInstalled(const QStringList& families, const QString& otherwise) {
    const auto found = std::ranges::find_if(
        families, [](const QString& family) { return QFontDatabase::hasFamily(family); });
    return found == families.end() ? otherwise : *found;
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
    QFont font(isFixed ? fixedFamily_ : family_);
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
    QApplication::setPalette(palette);
    QApplication::setFont(font(FontRole::body));
}

QString Theme::filledIn(QStringView sheet) const {
    const int fieldPadding = px(10);
    const auto& colours = tokens();
    const std::array<std::pair<QStringView, QString>, 14> values{{
        {u"fieldPadding", QStringLiteral("%1px").arg(fieldPadding)},
        {u"focusedPadding", QStringLiteral("%1px").arg(fieldPadding - 1)},
        // What can be used must stand out in high contrast too.
        {u"disabled", (contrast_ == Contrast::high ? colours.text3 : colours.control).name()},
        {u"text", colours.text.name()},
        {u"hover", colours.hover.name()},
        {u"pressed", colours.pressed.name()},
        {u"control", colours.control.name()},
        {u"raised", colours.raised.name()},
        {u"line", colours.line.name()},
        {u"accent", colours.accent.name()},
        {u"onAccent", colours.onAccent.name()},
        {u"field", colours.field.name()},
        {u"err", colours.err.name()},
        {u"chrome", colours.chrome.name()},
    }};
    const auto endOf = [sheet](qsizetype from, auto belongs) {
        while (from < sheet.size() && belongs(sheet[from]))
            ++from;
        return from;
    };
    QString filled;
    for (qsizetype i = 0; i < sheet.size();) {
        if (sheet[i] == QLatin1Char('$')) {
            const auto end = endOf(i + 1, [](QChar c) { return c.isLetter(); });
            const auto name = sheet.mid(i + 1, end - i - 1);
            filled +=
                std::ranges::find(values, name, [](auto& value) { return value.first; })->second;
            i = end;
        } else if (sheet[i].isDigit()) {
            const auto end = endOf(i, [](QChar c) { return c.isDigit(); });
            const bool grows = end < sheet.size() && sheet[end] == QLatin1Char('u');
            const auto number = sheet.mid(i, end - i);
            filled += grows ? QStringLiteral("%1px").arg(px(number.toInt())) : number.toString();
            i = end + (grows ? 1 : 0);
        } else {
            filled += sheet[i++];
        }
    }
    return filled;
}

QString Theme::styleSheet(Sheet sheet) const {
    // "$name" is a token, "6u" are six pixels at the default text size. A border that grows takes
    // its pixel off the padding, so that nothing moves.
    static constexpr QStringView menus = uR"(
        QMenuBar { background: transparent; color: $text; padding: 0; }
        QMenuBar::item { padding: 5u 10u; border-radius: 5u; background: transparent; }
        QMenuBar::item:selected { background: $hover; }
        QMenuBar::item:pressed { background: $pressed; }
        QMenuBar::item:disabled { color: $disabled; }
        QMenu { background: $raised; color: $text; border: 1px solid $line; padding: 4u; }
        QMenu::item { padding: 6u 24u; border-radius: 5u; }
        QMenu::item:selected { background: $accent; color: $onAccent; }
        QMenu::item:disabled { background: transparent; color: $disabled; }
        QMenu::separator { background: $line; height: 1px; margin: 4u 8u; }
        QToolTip { background: $raised; color: $text; border: 1px solid $line; padding: 4u 6u; }
    )";
    static constexpr QStringView fields = uR"(
        QLineEdit { background: $field; color: $text; border: 1px solid $control;
            border-radius: 7u; min-height: 28u; padding: 1px $fieldPadding;
            selection-background-color: $accent; selection-color: $onAccent;
            lineedit-password-character: 8226; }
        QLineEdit:focus { border: 2px solid $accent; padding: 0 $focusedPadding; }
        QLineEdit[invalid="true"] { border: 2px solid $err; padding: 0 $focusedPadding; }
        QLineEdit:disabled { background: $chrome; color: $disabled; }
    )";
    static constexpr QStringView choices = uR"(
        QComboBox QAbstractItemView { background: $raised; color: $text; border: 1px solid $line;
            padding: 4u; outline: 0; }
        QComboBox QAbstractItemView::item { min-height: 28u; padding: 0 6u; border-radius: 5u; }
        QComboBox QAbstractItemView::item:selected { background: $accent; color: $onAccent; }
    )";
    static constexpr QStringView scrollBars = uR"(
        QScrollBar { background: transparent; margin: 0; }
        QScrollBar:vertical { width: 10px; }
        QScrollBar:horizontal { height: 10px; }
        QScrollBar::handle { background: $control; border-radius: 3px; margin: 2px; }
        QScrollBar::handle:vertical { min-height: 32px; }
        QScrollBar::handle:horizontal { min-width: 32px; }
        QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
        QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
    )";
    switch (sheet) {
    case Sheet::menus:
        return filledIn(menus);
    case Sheet::fields: // which have menus
        return filledIn(fields) + filledIn(menus);
    case Sheet::scrollBars:
        return filledIn(scrollBars);
    case Sheet::all:
        break;
    }
    return filledIn(menus) + filledIn(fields) + filledIn(choices) + filledIn(scrollBars);
}

Appearance appearanceOf(const QPalette& systemPalette) {
    const bool isDark = systemPalette.color(QPalette::Window).lightness() <
                        systemPalette.color(QPalette::WindowText).lightness();
    return isDark ? Appearance::dark : Appearance::light;
}

} // namespace fennik::ui
