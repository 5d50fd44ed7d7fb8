#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace fennik::ui {

/// Draws the tick of a marked item into a square.
void drawTick(QPainter& painter, const QRectF& square, const QColor& color);

} // namespace fennik::ui
