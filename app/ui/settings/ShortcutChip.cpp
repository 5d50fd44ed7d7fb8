#include "app/ui/settings/ShortcutChip.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>
#include <utility>

namespace fennik::ui {

namespace {

constexpr double chipHeight = 22;
constexpr double padding = 8;
constexpr double signSide = 13;
constexpr double signGap = 5;
constexpr double radius = 5;

QFont chipFont(const ShortcutChip::Look& look, const Theme& theme) {
    return theme.font(FontRole::small, look.isPrimary ? QFont::DemiBold : QFont::Medium);
}

} // namespace

ShortcutChip::ShortcutChip(const Look& look, const Theme& theme, Icons& icons, QWidget* parent)
    : QAbstractButton(parent), look_(look), theme_(theme), icons_(icons) {
    setObjectName(QStringLiteral("shortcutChip"));
    setText(look.legend);
    setAccessibleName(look.legend);
    setAccessibleDescription(look.description);
    setToolTip(look.description);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ShortcutChip::setRemovable(bool isRemovable) {
    if (std::exchange(isRemovable_, isRemovable) == isRemovable)
        return;
    updateGeometry();
    update();
}

int ShortcutChip::crossRoom() const {
    return isRemovable_ ? theme_.px(signGap + signSide) : 0;
}

QSize ShortcutChip::sizeHint() const {
    const double words = QFontMetricsF(chipFont(look_, theme_)).horizontalAdvance(look_.legend);
    const int sign = look_.collides ? theme_.px(signGap + signSide) : 0;
    return {int(std::ceil(words)) + 2 * theme_.px(padding) + sign + crossRoom(),
            theme_.px(chipHeight)};
}

void ShortcutChip::keyPressEvent(QKeyEvent* event) {
    event->ignore(); // the row knows what to do
}

void ShortcutChip::mousePressEvent(QMouseEvent* event) {
    QAbstractButton::mousePressEvent(event);
    if (event->button() == Qt::LeftButton)
        pressedAt_ = event->pos();
}

void ShortcutChip::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_)
        return;
    const int way = (event->pos() - *pressedAt_).manhattanLength();
    if (!isDragged_ && way < QApplication::startDragDistance())
        return;
    isDragged_ = true;
    emit dragged(mapToParent(event->pos()).x());
}

void ShortcutChip::mouseReleaseEvent(QMouseEvent* event) {
    QAbstractButton::mouseReleaseEvent(event);
    const bool wasPressed = std::exchange(pressedAt_, std::nullopt).has_value();
    if (std::exchange(isDragged_, false))
        emit dropped();
    else if (wasPressed && isRemovable_ && rect().contains(event->pos()) &&
             event->pos().x() >= width() - theme_.px(padding) - crossRoom())
        emit removeRequested();
}

void ShortcutChip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double line = hasFocus() ? 2 : 1;
    const auto ink = look_.collides ? tokens.warn : tokens.text;
    const auto edge = look_.collides ? tokens.warn : tokens.control;
    const auto plain = underMouse() ? tokens.hover : tokens.raised;
    painter.setPen(QPen(hasFocus() ? tokens.accent : edge, line));
    painter.setBrush(look_.collides ? tokens.warnSoft : plain);
    painter.drawRoundedRect(QRectF(rect()).adjusted(line / 2, line / 2, -line / 2, -line / 2),
                            radius, radius);
    const int side = theme_.px(signSide);
    const int top = (height() - side) / 2;
    const double ratio = devicePixelRatioF();
    int left = theme_.px(padding);
    if (look_.collides) {
        painter.drawPixmap(left, top,
                           icons_.line(QStringLiteral("triangle-alert"), side, ink, ratio));
        left += side + theme_.px(signGap);
    }
    painter.setFont(chipFont(look_, theme_));
    painter.setPen(ink);
    painter.drawText(rect().adjusted(left, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, look_.legend);
    if (isRemovable_)
        painter.drawPixmap(width() - theme_.px(padding) - side, top,
                           icons_.line(QStringLiteral("x"), side, tokens.text2, ratio));
}

} // namespace fennik::ui
