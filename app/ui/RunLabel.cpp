#include "app/ui/RunLabel.h"

#include "app/ui/TabularText.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace fennik::ui {

RunLabel::RunLabel(const Theme& theme, Qt::Alignment alignment, QWidget* parent)
    : QLabel(parent), theme_(theme) {
    setAlignment(alignment);
    setTextFormat(Qt::PlainText); // names of files are no markup
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void RunLabel::setRuns(std::vector<Run> runs) {
    runs_ = std::move(runs);
    QString text;
    for (const auto& run : runs_)
        text += run.text;
    if (text != this->text())
        setText(text);
    setVisible(!text.isEmpty()); // an empty one is nothing to read
    updateGeometry();
    update();
}

double RunLabel::width(const Run& run) const {
    return TabularText::width(theme_.font(FontRole::detail, run.weight), run.text);
}

double RunLabel::contentWidth() const {
    double total = 0;
    for (const auto& run : runs_)
        total += width(run);
    return total;
}

QSize RunLabel::sizeHint() const {
    return {int(std::ceil(contentWidth())), theme_.px(16)};
}

QSize RunLabel::minimumSizeHint() const {
    const bool mayBeCut = !alignment().testFlag(Qt::AlignRight);
    return mayBeCut ? QSize(0, theme_.px(16)) : sizeHint();
}

void RunLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRectF area(rect());
    double left = alignment().testFlag(Qt::AlignRight)
                      ? std::max(area.left(), area.right() - contentWidth())
                      : area.left();
    for (const auto& run : runs_) {
        if (left >= area.right())
            return;
        painter.setFont(theme_.font(FontRole::detail, run.weight));
        painter.setPen(run.color);
        TabularText::draw(painter, QRectF(QPointF(left, area.top()), area.bottomRight()),
                          Qt::AlignLeft, run.text);
        left += width(run);
    }
}

} // namespace fennik::ui
