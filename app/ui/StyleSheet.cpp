#include "app/ui/StyleSheet.h"

#include <QEvent>
#include <QWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace fennik::ui {

namespace {

constexpr QStringView menus = uR"(
    QMenu { background: $raised; color: $text; border: 1px solid $line; padding: 4u; }
    QMenu::item { padding: 6u 24u; border-radius: 5u; }
    QMenu::item:selected { background: $accent; color: $onAccent; }
    QMenu::item:disabled { background: transparent; color: $disabled; }
    QMenu::separator { background: $line; height: 1px; margin: 4u 8u; }
    QToolTip { background: $raised; color: $text; border: 1px solid $line; padding: 4u 6u; }
)";

// A border that grows takes its pixel off the padding, so that nothing moves.
constexpr QStringView fields = uR"(
    QLineEdit { background: $field; color: $text; border: 1px solid $control;
        border-radius: 7u; min-height: 28u; padding: 1px $fieldPadding;
        selection-background-color: $accent; selection-color: $onAccent;
        lineedit-password-character: 8226; }
    QLineEdit:focus { border: 2px solid $accent; padding: 0 $focusedPadding; }
    QLineEdit[invalid="true"] { border: 2px solid $err; padding: 0 $focusedPadding; }
    QLineEdit:disabled { background: $chrome; color: $disabled; }
)";

constexpr QStringView choices = uR"(
    QComboBox QAbstractItemView { background: $raised; color: $text; border: 1px solid $line;
        padding: 4u; outline: 0; }
    QComboBox QAbstractItemView::item { min-height: 28u; padding: 0 6u; border-radius: 5u; }
    QComboBox QAbstractItemView::item:selected { background: $accent; color: $onAccent; }
)";

/// "$name" is a value, "6u" are six pixels at the default text size.
QString filledIn(const QString& sheet, const Theme& theme) {
    const int fieldPadding = theme.px(10);
    const auto& colours = theme.tokens();
    const int narrowPadding = theme.px(4);
    const std::array<std::pair<QStringView, QString>, 14> values{{
        {u"narrowPadding", QStringLiteral("%1px").arg(narrowPadding)},
        {u"focusedNarrowPadding", QStringLiteral("%1px").arg(narrowPadding - 1)},
        {u"fieldPadding", QStringLiteral("%1px").arg(fieldPadding)},
        {u"focusedPadding", QStringLiteral("%1px").arg(fieldPadding - 1)},
        {u"disabled", theme.disabledText().name()},
        {u"text", colours.text.name()},
        {u"control", colours.control.name()},
        {u"raised", colours.raised.name()},
        {u"line", colours.line.name()},
        {u"accent", colours.accent.name()},
        {u"onAccent", colours.onAccent.name()},
        {u"field", colours.field.name()},
        {u"err", colours.err.name()},
        {u"chrome", colours.chrome.name()},
    }};
    const auto endOf = [&sheet](qsizetype from, auto belongs) {
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
            filled += grows ? QStringLiteral("%1px").arg(theme.px(number.toInt())) : number;
            i = end + (grows ? 1 : 0);
        } else {
            filled += sheet[i++];
        }
    }
    return filled;
}

QString textOf(StyleSheet sheet) {
    auto text = menus.toString();
    if (sheet != StyleSheet::menus)
        text.append(fields);
    if (sheet == StyleSheet::all)
        text.append(choices);
    return text;
}

/// What a widget wears, as long as it lives.
class Clothes final : public QObject {
public:
    Clothes(QWidget& widget, const Theme& theme, StyleSheet sheet, QStringView more)
        : QObject(&widget), widget_(widget), theme_(theme), sheet_(sheet), more_(more) {}

    void wear() {
        connect(&theme_, &Theme::changed, this, &Clothes::putOn);
        putOn();
    }

    void putOn() { widget_.setStyleSheet(filledIn(textOf(sheet_).append(more_), theme_)); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Polish) {
            widget_.removeEventFilter(this);
            wear();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& widget_;
    const Theme& theme_;
    StyleSheet sheet_;
    QStringView more_;
};

} // namespace

void wear(QWidget& widget, const Theme& theme, StyleSheet sheet, QStringView more) {
    (new Clothes(widget, theme, sheet, more))->wear();
}

void wearOnceShown(QWidget& widget, const Theme& theme, StyleSheet sheet, QStringView more) {
    widget.installEventFilter(new Clothes(widget, theme, sheet, more));
}

} // namespace fennik::ui
