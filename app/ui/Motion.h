#pragma once

#include <QVariantAnimation>

#include <chrono>

namespace fennik::ui {

/// Takes a number from one value to another in a short time, or at once where nothing may move on
/// its own. Main thread only.
class Motion final : public QObject {
    Q_OBJECT

public:
    /// Starts at rest at `value`.
    Motion(std::chrono::milliseconds duration, double value, QObject* parent);

    double value() const { return value_; }
    /// From where it is now, also on the way elsewhere.
    void moveTo(double value);

signals:
    void moved(double value);
    /// Comes after the last `moved`.
    void arrived();

private:
    void take(double value);

    QVariantAnimation animation_;
    double value_;
};

} // namespace fennik::ui
