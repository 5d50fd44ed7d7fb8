#include "app/ui/TextButton.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 9;

} // namespace

TextButton::TextButton(const QString& text, const Theme& theme, QWidget* parent)
    : QAbstractButton(parent), theme_(theme) {
    setText(text);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize TextButton::sizeHint() const {
    const QFontMetricsF metrics(theme_.font(FontRole::detail, QFont::Medium));
    const double width = metrics.horizontalAdvance(text()) + 2 * theme_.px(padding);
    return {int(std::ceil(width)), theme_.px(24)};
}

void TextButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    if (underMouse()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? tokens.pressed : tokens.hover);
        painter.drawRoundedRect(rect(), 7, 7);
    }
    painter.setFont(theme_.font(FontRole::detail, QFont::Medium));
    painter.setPen(tokens.accentText);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace fennik::ui
