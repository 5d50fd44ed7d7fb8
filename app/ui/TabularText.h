#pragma once

#include <QFont>
#include <QString>

class QPainter;
class QRectF;

/// Text of one line whose digits are all equally wide, so that columns of numbers align and figures
/// that change do not jitter. What rows repeat (digits, separators, units) is shaped once a font
/// and kept. Main thread only.
namespace fennik::ui::TabularText {

/// The width of `text` as `draw` draws it.
double width(const QFont& font, const QString& text);

/// Draws with the painter's font and pen, from the left edge of `rect` or to its right edge. Text
/// wider than the rectangle is cut off with "…".
void draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text);

} // namespace fennik::ui::TabularText
