#include "app/ui/HoverGround.h"

#include <QAbstractButton>
#include <QPainter>

namespace fennik::ui {

void paintHoverGround(QPainter& painter, const QAbstractButton& button, const QRectF& area,
                      double radius, const Tokens& tokens) {
    if (!button.underMouse())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(button.isDown() ? tokens.pressed : tokens.hover);
    painter.drawRoundedRect(area, radius, radius);
}

} // namespace fennik::ui
