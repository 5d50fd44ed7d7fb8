#include "app/ui/ProgressBar.h"

#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace fennik::ui {

ProgressBar::ProgressBar(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("progressBar"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ProgressBar::setProgress(double fraction, Kind kind) {
    const bool looksTheSame = filled(fraction) == filled(fraction_) && kind == kind_;
    fraction_ = fraction;
    kind_ = kind;
    if (!looksTheSame)
        update();
}

QColor ProgressBar::color() const {
    const auto& tokens = theme_.tokens();
    switch (kind_) {
    case Kind::working:
        return tokens.progress;
    case Kind::paused:
        return tokens.control;
    case Kind::asking:
        return tokens.markSolid;
    case Kind::done:
        return tokens.ok;
    case Kind::failed:
        break;
    }
    return tokens.err;
}

void ProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = height() / 2.0;
    QPainterPath track;
    track.addRoundedRect(rect(), radius, radius);
    painter.fillPath(track, theme_.tokens().pressed);
    const QRectF done(0, 0, filled(fraction_), height());
    if (kind_ != Kind::paused) {
        QPainterPath bar;
        bar.addRoundedRect(done, radius, radius);
        painter.fillPath(bar & track, color());
        return;
    }
    const double dash = theme_.px(6);
    const double gap = theme_.px(3);
    painter.setClipPath(track);
    for (double left = 0; left < done.width(); left += dash + gap)
        painter.fillRect(QRectF(left, 0, dash, height()) & done, color());
}

} // namespace fennik::ui
