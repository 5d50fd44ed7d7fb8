#include "app/ui/Motion.h"

#include "app/ui/Theme.h"

namespace fennik::ui {

Motion::Motion(std::chrono::milliseconds duration, double value, QObject* parent)
    : QObject(parent), value_(value) {
    animation_.setDuration(int(duration.count()));
    animation_.setEasingCurve(QEasingCurve::OutCubic);
    connect(&animation_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& now) { take(now.toDouble()); });
    connect(&animation_, &QVariantAnimation::finished, this, &Motion::arrived);
}

void Motion::moveTo(double value) {
    animation_.stop();
    if (Theme::reducedMotion() || value == value_) {
        take(value);
        emit arrived();
        return;
    }
    animation_.setStartValue(value_);
    animation_.setEndValue(value);
    animation_.start();
}

void Motion::take(double value) {
    value_ = value;
    emit moved(value);
}

} // namespace fennik::ui
