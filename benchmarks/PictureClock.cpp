#include "benchmarks/PictureClock.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <ctime>
#include <iostream>
#include <utility>

namespace fennik::bench {

namespace {

/// Nanoseconds since the driver started this program.
long long sinceExec() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto started = qEnvironmentVariable("FENNIK_BENCH_EXEC").toLongLong();
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec - started;
}

} // namespace

PictureClock::PictureClock(QWidget& left, QWidget& right, IsComplete isComplete)
    : left_(left), right_(right), isComplete_(std::move(isComplete)) {
    left_.installEventFilter(this);
    right_.installEventFilter(this);
}

bool PictureClock::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Paint)
        return false;
    if (watched == &left_)
        leftIsComplete_ = isComplete_(left_);
    if (watched == &right_)
        rightIsComplete_ = isComplete_(right_);
    if (!std::exchange(isNoting_, true)) {
        // All widgets of a window are painted and sent to the display in one go, before the next
        // event is taken.
        QTimer::singleShot(0, this, &PictureClock::notePicture);
    }
    return false;
}

void PictureClock::notePicture() {
    isNoting_ = false;
    const auto now = sinceExec();
    if (first_ == 0)
        first_ = now;
    if (!leftIsComplete_ || !rightIsComplete_)
        return;
    left_.removeEventFilter(this);
    right_.removeEventFilter(this);
    std::cout << "first=" << first_ << " shown=" << now << std::endl;
    if (!qEnvironmentVariableIsSet("FENNIK_BENCH_STAY"))
        QApplication::quit();
}

} // namespace fennik::bench
