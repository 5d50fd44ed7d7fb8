#include "app/ui/TextButton.h"

#include "app/ui/HoverGround.h"

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

void TextButton::setLineIcon(const QString& name, Icons& icons) {
    icon_ = name;
    icons_ = &icons;
    updateGeometry();
    update();
}

void TextButton::setTextShown(bool isShown) {
    isTextShown_ = isShown;
    setToolTip(isShown ? QString() : text());
    updateGeometry();
    update();
}

int TextButton::iconRoom() const {
    return icon_.isEmpty() ? 0 : theme_.px(22);
}

QSize TextButton::sizeHint() const {
    if (!isTextShown_)
        return {theme_.px(28), theme_.px(24)};
    const QFontMetricsF metrics(theme_.font(FontRole::detail, QFont::Medium));
    const double width = metrics.horizontalAdvance(text()) + iconRoom() + 2 * theme_.px(padding);
    return {int(std::ceil(width)), theme_.px(24)};
}

void TextButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    paintHoverGround(painter, *this, rect(), 7, tokens);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(tokens.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
    }
    const auto color = icon_.isEmpty() ? tokens.accentText : tokens.text2;
    if (!icon_.isEmpty()) {
        const int side = theme_.px(15);
        const int left = isTextShown_ ? theme_.px(padding) : (width() - side) / 2;
        painter.drawPixmap(left, (height() - side) / 2,
                           icons_->line(icon_, side, color, devicePixelRatioF()));
    }
    if (!isTextShown_)
        return;
    painter.setFont(theme_.font(FontRole::detail, QFont::Medium));
    painter.setPen(color);
    painter.drawText(rect().adjusted(iconRoom(), 0, 0, 0), Qt::AlignCenter, text());
}

} // namespace fennik::ui
