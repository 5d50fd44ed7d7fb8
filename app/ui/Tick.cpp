#include "app/ui/Tick.h"

#include <QPainter>
#include <QPainterPath>

namespace fennik::ui {

void drawTick(QPainter& painter, const QRectF& square, const QColor& color) {
    const double side = square.width();
    QPainterPath tick(square.topLeft() + QPointF(side * 0.14, side * 0.54));
    tick.lineTo(square.topLeft() + QPointF(side * 0.40, side * 0.79));
    tick.lineTo(square.topLeft() + QPointF(side * 0.88, side * 0.24));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, side / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(tick);
    painter.restore();
}

} // namespace fennik::ui
