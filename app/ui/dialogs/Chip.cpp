#include "app/ui/dialogs/Chip.h"

#include "app/ui/Text.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 11;
constexpr double mostWidth = 180;

} // namespace

Chip::Chip(const QString& text, const Theme& theme, QWidget* parent)
    : QAbstractButton(parent), value_(text), theme_(theme) {
    setObjectName(QStringLiteral("chip"));
    setAccessibleName(text);
    setAccessibleDescription(QStringLiteral("Použít tuto masku"));
    setToolTip(toolTipText(text));
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
}

QSize Chip::sizeHint() const {
    const double text = QFontMetricsF(theme_.font(FontRole::fixed)).horizontalAdvance(value_);
    const int most = theme_.px(mostWidth);
    const int width = text > most ? most : int(std::ceil(text)) + 2 * theme_.px(padding);
    return {std::min(width, most), theme_.px(24)};
}

void Chip::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(tokens.line);
    painter.setBrush(isDown() ? tokens.pressed : underMouse() ? tokens.hover : tokens.raised);
    const auto shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);
    const auto font = theme_.font(FontRole::fixed);
    const auto room = QRectF(rect()).adjusted(theme_.px(padding), 0, -theme_.px(padding) + 1, 0);
    painter.setFont(font);
    painter.setPen(tokens.text2);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(font).elidedText(value_, Qt::ElideRight, room.width()));
}

} // namespace fennik::ui
