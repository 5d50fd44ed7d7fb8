#include "app/ui/TabularText.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QStaticText>

#include <algorithm>

namespace fennik::ui::TabularText {

namespace {

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

struct Piece {
    QStaticText text;
    double width = 0; ///< of its own; digits stand in the middle of `ShapedFont::digitWidth`
};

/// The runs of text that were drawn in one font, shaped.
class ShapedFont {
public:
    explicit ShapedFont(const QFont& font = {}) : font_(font), metrics_(font) {
        for (char16_t digit = u'0'; digit <= u'9'; ++digit)
            digitWidth_ = std::max(digitWidth_, metrics_.horizontalAdvance(QChar(digit)));
    }

    const QFontMetricsF& metrics() const { return metrics_; }
    double digitWidth() const { return digitWidth_; }

    const Piece& piece(const QString& run) {
        const auto found = pieces_.constFind(run);
        if (found != pieces_.constEnd())
            return *found;
        if (pieces_.size() >= mostPieces)
            pieces_.clear();
        Piece piece{QStaticText(run), metrics_.horizontalAdvance(run)};
        piece.text.setTextFormat(Qt::PlainText);
        piece.text.prepare({}, font_);
        return *pieces_.insert(run, piece);
    }

    /// How far the text goes on behind this run.
    double advance(const QString& run) { return isDigit(run[0]) ? digitWidth_ : piece(run).width; }

    double width(const QString& text) {
        double total = 0;
        forEachRun(text, [&](const QString& run) { total += advance(run); });
        return total;
    }

private:
    static constexpr qsizetype mostPieces = 500;

    QFont font_;
    QFontMetricsF metrics_;
    double digitWidth_ = 0;
    QHash<QString, Piece> pieces_;
};

ShapedFont& shaped(const QFont& font) {
    static QHash<QFont, ShapedFont> fonts;
    const auto found = fonts.find(font);
    return found != fonts.end() ? *found : *fonts.insert(font, ShapedFont(font));
}

} // namespace

double width(const QFont& font, const QString& text) {
    return shaped(font).width(text);
}

void draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text) {
    auto& font = shaped(painter.font());
    const auto& metrics = font.metrics();
    auto shown = text;
    auto total = font.width(shown);
    if (total > rect.width()) {
        // The metrics know digits by their own widths, which are smaller.
        const double wider = total - metrics.horizontalAdvance(text);
        shown = metrics.elidedText(text, Qt::ElideRight, rect.width() - wider);
        total = font.width(shown);
    }
    double x = alignment.testFlag(Qt::AlignRight) ? rect.right() - total : rect.left();
    const double top = rect.center().y() - (metrics.ascent() + metrics.descent()) / 2;
    forEachRun(shown, [&](const QString& run) {
        const auto& piece = font.piece(run);
        const double advance = font.advance(run);
        const double inset = isDigit(run[0]) ? (advance - piece.width) / 2 : 0;
        painter.drawStaticText(QPointF(x + inset, top), piece.text);
        x += advance;
    });
}

} // namespace fennik::ui::TabularText
