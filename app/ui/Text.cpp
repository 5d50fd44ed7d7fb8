#include "app/ui/Text.h"

#include "core/base/CzechText.h"
#include "core/base/DisplayText.h"
#include "core/listing/Format.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>

#include <algorithm>
#include <ctime>

namespace fennik::ui {

namespace {

struct DigitWidths {
    double widest = 0;
    double each[10] = {};
};

const DigitWidths& digitWidths(const QFont& font) {
    static QHash<QFont, DigitWidths> known;
    auto found = known.find(font);
    if (found != known.end())
        return *found;
    const QFontMetricsF metrics(font);
    DigitWidths widths;
    for (int digit = 0; digit < 10; ++digit) {
        widths.each[digit] = metrics.horizontalAdvance(QChar(u'0' + digit));
        widths.widest = std::max(widths.widest, widths.each[digit]);
    }
    return *known.insert(font, widths);
}

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// Calls `each` for the runs of the text: single digits, and all that stands between them.
template <class Each>
void forEachRun(const QString& text, Each each) {
    for (qsizetype begin = 0; begin < text.size();) {
        auto end = begin + 1;
        while (!isDigit(text[begin]) && end < text.size() && !isDigit(text[end]))
            ++end;
        each(text.mid(begin, end - begin));
        begin = end;
    }
}

QString twoDigits(int number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

} // namespace

QString shownName(std::string_view name) {
    return fromUtf8(displayText(name));
}

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString czechDate(const Date& date, DateDetail detail) {
    const std::time_t seconds = date.seconds;
    std::tm local{};
    if (date == Date::distantPast() || localtime_r(&seconds, &local) == nullptr)
        return {};
    auto text = QStringLiteral("%1. %2. %3 %4:%5")
                    .arg(local.tm_mday)
                    .arg(local.tm_mon + 1)
                    .arg(std::int64_t{local.tm_year} + 1900, 4, 10, QLatin1Char('0'))
                    .arg(local.tm_hour)
                    .arg(twoDigits(local.tm_min));
    if (detail == DateDetail::seconds)
        text += QLatin1Char(':') + twoDigits(local.tm_sec);
    return text;
}

QString itemCount(std::int64_t count) {
    const auto noun = pluralForm(count, {"položka", "položky", "položek"});
    return fromUtf8(Format::grouped(count)) + QLatin1Char(' ') + fromUtf8(noun);
}

double tabularWidth(const QFont& font, const QString& text) {
    const QFontMetricsF metrics(font);
    const auto& digits = digitWidths(font);
    double width = 0;
    forEachRun(text, [&](const QString& run) {
        width += isDigit(run[0]) ? digits.widest : metrics.horizontalAdvance(run);
    });
    return width;
}

void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                 const QString& text) {
    const auto font = painter.font();
    const QFontMetricsF metrics(font);
    auto shown = text;
    auto width = tabularWidth(font, shown);
    if (width > rect.width()) {
        shown = metrics.elidedText(text, Qt::ElideRight, rect.width());
        width = tabularWidth(font, shown);
    }
    const auto& digits = digitWidths(font);
    double x = alignment.testFlag(Qt::AlignRight) ? rect.right() - width : rect.left();
    const double baseline = rect.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    forEachRun(shown, [&](const QString& run) {
        if (!isDigit(run[0])) {
            painter.drawText(QPointF(x, baseline), run);
            x += metrics.horizontalAdvance(run);
            return;
        }
        const double own = digits.each[run[0].unicode() - u'0'];
        painter.drawText(QPointF(x + (digits.widest - own) / 2, baseline), run);
        x += digits.widest;
    });
}

} // namespace fennik::ui
