#include "app/ui/QueuePill.h"

#include "app/ui/TabularText.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace fennik::ui {

namespace {

constexpr double padding = 8;
constexpr double ringSide = 14;
constexpr double ringWidth = 2.5;
constexpr double textLeft = 28;

} // namespace

struct QueuePill::Colors {
    QColor ground;
    QColor text;
    QColor ring;
};

QueuePill::QueuePill(const Theme& theme, QWidget* parent) : QAbstractButton(parent), theme_(theme) {
    setObjectName(QStringLiteral("queuePill"));
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    hide();
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void QueuePill::setBrief(const JobTexts::Brief& brief) {
    if (brief == brief_)
        return;
    const double width = TabularText::width(textFont(), brief.text);
    const bool isOfTheSameKind = brief.tone == brief_.tone;
    textWidth_ = isOfTheSameKind ? std::max(width, textWidth_) : width;
    brief_ = brief;
    setText(brief.text);
    setAccessibleName(QStringLiteral("Fronta operací, ") + brief.text);
    update();
}

QSize QueuePill::sizeHint() const {
    return {int(std::ceil(textWidth_)) + theme_.px(textLeft + padding + 2), theme_.px(26)};
}

QueuePill::Colors QueuePill::colors() const {
    const auto& tokens = theme_.tokens();
    switch (brief_.tone) {
    case JobTexts::Brief::Tone::works:
        return {tokens.accentSoft, tokens.accentText, tokens.progress};
    case JobTexts::Brief::Tone::asks:
        return {tokens.markSoft, tokens.mark, tokens.markSolid};
    case JobTexts::Brief::Tone::done:
        return {tokens.okSoft, tokens.ok, tokens.ok};
    case JobTexts::Brief::Tone::failed:
        break;
    }
    return {tokens.errSoft, tokens.err, tokens.err};
}

void QueuePill::paintEvent(QPaintEvent*) {
    const auto& tokens = theme_.tokens();
    const auto [ground, textColor, ringColor] = colors();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(underMouse() ? QPen(ringColor, 1) : QPen(Qt::NoPen));
    painter.setBrush(ground);
    const auto shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(shape, shape.height() / 2, shape.height() / 2);

    const double side = theme_.px(ringSide) - ringWidth;
    const QRectF ring(theme_.px(padding) + ringWidth / 2, (height() - side) / 2, side, side);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(tokens.control, ringWidth));
    painter.setOpacity(0.35);
    painter.drawEllipse(ring);
    painter.setOpacity(1);
    constexpr int top = 90 * 16; // in sixteenths of a degree
    constexpr int whole = 360 * 16;
    painter.setPen(QPen(ringColor, ringWidth, Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(ring, top, -qRound(brief_.fraction * whole));

    painter.setFont(textFont());
    painter.setPen(textColor);
    TabularText::draw(painter, QRectF(theme_.px(textLeft), 0, width(), height()), Qt::AlignLeft,
                      text());
}

} // namespace fennik::ui
