#include "app/ui/LoadingView.h"

#include "app/ui/PanelGeometry.h"

#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <array>

namespace fennik::ui {

namespace {

constexpr int millisecondsPerStep = 33;
constexpr int stepsPerPass = 40;

} // namespace

LoadingStripe::LoadingStripe(const Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("loadingStripe"));
    hide();
}

void LoadingStripe::showEvent(QShowEvent*) {
    step_ = 0;
    if (!Theme::reducedMotion())
        timer_.start(millisecondsPerStep, this);
}

void LoadingStripe::hideEvent(QHideEvent*) {
    timer_.stop();
}

void LoadingStripe::timerEvent(QTimerEvent*) {
    step_ = (step_ + 1) % stepsPerPass;
    update();
}

void LoadingStripe::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto& accent = theme_.tokens().accent;
    if (Theme::reducedMotion()) {
        painter.setPen(QPen(accent, height(), Qt::DashLine, Qt::FlatCap));
        painter.drawLine(0, height() / 2, width(), height() / 2);
        return;
    }
    const double part = width() / 3.0;
    const double left = (width() + part) * step_ / stepsPerPass - part;
    painter.fillRect(QRectF(left, 0, part, height()), accent);
}

LoadingSkeleton::LoadingSkeleton(const Theme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
    setObjectName(QStringLiteral("loadingSkeleton"));
    hide();
}

void LoadingSkeleton::paintEvent(QPaintEvent*) {
    constexpr std::array nameWidths{120.0, 86.0, 150.0, 64.0, 132.0, 98.0, 146.0, 78.0, 140.0};
    const PanelGeometry geometry(theme_);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.tokens().pressed);
    const double bar = theme_.px(9);
    const double right = width() - geometry.rightMargin();
    for (std::size_t row = 0; row < nameWidths.size(); ++row) {
        const double top = theme_.px(4) + double(row) * geometry.rowHeight();
        const double middle = top + geometry.rowHeight() / 2.0;
        const double side = geometry.icon() - 2;
        painter.drawRoundedRect(QRectF(geometry.gutter(), middle - side / 2, side, side), 4, 4);
        const auto drawBar = [&](double left, double width) {
            painter.drawRoundedRect(QRectF(left, middle - bar / 2, width, bar), bar / 2, bar / 2);
        };
        drawBar(geometry.nameLeft(), theme_.px(nameWidths[row]));
        drawBar(right - theme_.px(104), theme_.px(104));
        drawBar(right - theme_.px(188), theme_.px(46));
    }
}

} // namespace fennik::ui
