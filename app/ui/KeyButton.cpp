#include "app/ui/KeyButton.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace fennik::ui {

namespace {

constexpr double capPadding = 6;
constexpr double disabledOpacity = 0.5;

} // namespace

KeyButton::KeyButton(const QString& title, const QString& key, const Theme& theme, QWidget* parent)
    : QAbstractButton(parent), theme_(theme) {
    setTitle(title, key);
    // What is named on the button works where the keyboard is; only dialogs give it to a button.
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void KeyButton::setLook(KeyButtonLook look) {
    look_ = look;
    updateGeometry();
    update();
}

void KeyButton::setTitle(const QString& title, const QString& key) {
    key_ = key;
    setText(title);
    setAccessibleDescription(key);
    updateGeometry();
    update();
}

void KeyButton::setLineIcon(const QString& name, Icons& icons, QColor Tokens::* token) {
    icon_ = name;
    iconColor_ = token;
    icons_ = &icons;
    updateGeometry();
    update();
}

int KeyButton::padding() const {
    return theme_.px(look_ == KeyButtonLook::small ? 10 : 14);
}

int KeyButton::iconRoom() const {
    return icon_.isEmpty() ? 0 : theme_.px(22);
}

double KeyButton::titleWidth() const {
    return QFontMetricsF(theme_.font(FontRole::body, QFont::Medium)).horizontalAdvance(text());
}

double KeyButton::keyWidth() const {
    if (key_.isEmpty())
        return 0;
    const double text = QFontMetricsF(theme_.font(FontRole::small)).horizontalAdvance(key_);
    const double cap = look_ == KeyButtonLook::primary ? 2 * theme_.px(capPadding) : 0;
    return text + cap + theme_.px(look_ == KeyButtonLook::primary ? 10 : 12);
}

QSize KeyButton::sizeHint() const {
    const double width = titleWidth() + keyWidth() + iconRoom() + 2 * padding();
    return {int(std::ceil(width)), theme_.px(look_ == KeyButtonLook::small ? 26 : 32)};
}

void KeyButton::paintGround(QPainter& painter) const {
    const auto& tokens = theme_.tokens();
    const bool isPrimary = look_ == KeyButtonLook::primary;
    const auto shape = QRectF(rect());
    constexpr double radius = 7;
    if (isPrimary) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(underMouse() || isDown() ? tokens.accent.darker(isDown() ? 115 : 107)
                                                  : tokens.accent);
        painter.drawRoundedRect(shape, radius, radius);
        if (!hasFocus())
            return;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(tokens.onAccent, 1.5));
        painter.drawRoundedRect(shape.adjusted(2.5, 2.5, -2.5, -2.5), radius - 2, radius - 2);
        return;
    }
    const double line = hasFocus() ? 2 : 1;
    painter.setPen(QPen(hasFocus() ? tokens.accent : tokens.control, line));
    painter.setBrush(isDown() ? tokens.pressed : underMouse() ? tokens.hover : tokens.raised);
    painter.drawRoundedRect(shape.adjusted(line / 2, line / 2, -line / 2, -line / 2), radius,
                            radius);
}

void KeyButton::paintKey(QPainter& painter, const QRectF& area) const {
    const auto& tokens = theme_.tokens();
    painter.setFont(theme_.font(FontRole::small));
    if (look_ != KeyButtonLook::primary) {
        painter.setPen(tokens.text3);
        painter.drawText(area.adjusted(-2, 0, 0, 0), Qt::AlignRight | Qt::AlignVCenter, key_);
        return;
    }
    const double capWidth = keyWidth() - theme_.px(10);
    const double capHeight = theme_.px(20);
    const QRectF cap(area.right() - capWidth, area.center().y() - capHeight / 2, capWidth,
                     capHeight);
    auto edge = tokens.onAccent;
    edge.setAlphaF(0.45F);
    auto ground = tokens.onAccent;
    ground.setAlphaF(0.16F);
    painter.setPen(edge);
    painter.setBrush(ground);
    painter.drawRoundedRect(cap.adjusted(0.5, 0.5, -0.5, -0.5), 5, 5);
    painter.setPen(tokens.onAccent);
    painter.drawText(cap, Qt::AlignCenter, key_);
}

void KeyButton::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1 : disabledOpacity);
    paintGround(painter);

    const auto inner = QRectF(rect()).adjusted(padding(), 0, -padding(), 0);
    if (!icon_.isEmpty()) {
        const int side = theme_.px(16);
        const int top = (height() - side) / 2;
        painter.drawPixmap(QPointF(inner.left(), top),
                           icons_->line(icon_, side, tokens.*iconColor_, devicePixelRatioF()));
    }
    painter.setFont(theme_.font(FontRole::body, QFont::Medium));
    painter.setPen(look_ == KeyButtonLook::primary ? tokens.onAccent : tokens.text);
    painter.drawText(inner.adjusted(iconRoom(), 0, 2, 0), Qt::AlignLeft | Qt::AlignVCenter, text());
    if (!key_.isEmpty())
        paintKey(painter, inner);
}

} // namespace fennik::ui
