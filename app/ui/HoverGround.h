#pragma once

#include "app/ui/Theme.h"

#include <QRectF>

class QAbstractButton;
class QPainter;

namespace fennik::ui {

/// Paints the ground of a button without a frame of its own, which has one only while the mouse is
/// over it.
void paintHoverGround(QPainter& painter, const QAbstractButton& button, const QRectF& area,
                      double radius, const Tokens& tokens);

} // namespace fennik::ui
