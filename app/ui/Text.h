#pragma once

#include "core/base/Date.h"

#include <QFont>
#include <QString>

#include <string_view>

class QPainter;
class QRectF;

namespace fennik::ui {

/// The bytes of a name as they are shown.
QString shownName(std::string_view name);
/// UTF-8 of the program's own.
QString fromUtf8(std::string_view text);

enum class DateDetail { minutes, seconds };
/// A date as Czechs write it, "20. 11. 2026 15:26", in local time; empty for the distant past.
QString czechDate(const Date& date, DateDetail detail);

/// The number with the noun in its right form: "1 položka", "3 položky", "23 položek".
QString itemCount(std::int64_t count);

/// The width of `text` as `drawTabular` draws it.
double tabularWidth(const QFont& font, const QString& text);
/// Draws one line with all digits equally wide, so that columns of numbers align, from the left
/// edge of `rect` or to its right edge. Text wider than the rectangle is cut off with "…".
void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                 const QString& text);

} // namespace fennik::ui
