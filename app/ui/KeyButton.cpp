#include "app/ui/KeyButton.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 14;
constexpr double keyGap = 12;

} // namespace

KeyButton::KeyButton(const QString& title, const QString& key, const Theme& theme, QWidget* parent)
    : QAbstractButton(parent), key_(key), theme_(theme) {
    setText(title);
    setAccessibleDescription(key);
    // The table keeps the keyboard; the keys named on the buttons work there.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

double KeyButton::titleWidth() const {
    return QFontMetricsF(theme_.font(FontRole::body, QFont::Medium)).horizontalAdvance(text());
}

double KeyButton::keyWidth() const {
    return QFontMetricsF(theme_.font(FontRole::small)).horizontalAdvance(key_);
}

QSize KeyButton::sizeHint() const {
    const double width = titleWidth() + keyWidth() + theme_.px(2 * padding + keyGap);
    return {int(std::ceil(width)), theme_.px(32)};
}

void KeyButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.control);
    painter.setBrush(isDown() ? tokens.pressed : underMouse() ? tokens.hover : tokens.raised);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 7, 7);

    const auto inner = QRectF(rect()).adjusted(theme_.px(padding), 0, -theme_.px(padding), 0);
    painter.setFont(theme_.font(FontRole::body, QFont::Medium));
    painter.setPen(tokens.text);
    painter.drawText(inner.adjusted(0, 0, 2, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
    painter.setFont(theme_.font(FontRole::small));
    painter.setPen(tokens.text3);
    painter.drawText(inner.adjusted(-2, 0, 0, 0), Qt::AlignRight | Qt::AlignVCenter, key_);
}

} // namespace fennik::ui
