#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace fennik::bench {

/// Notes when the first picture of a window stood on the screen, and when the one with all content
/// did, counted from the moment the driver started the program. Prints both in nanoseconds, as
/// "first=… shown=…", and then ends the application, or keeps it open where its memory is to be
/// measured: that is what FENNIK_BENCH_STAY in the environment asks for.
class PictureClock final : public QObject {
public:
    /// `isComplete` tells of a table's viewport whether what is painted there now is all of it.
    using IsComplete = std::function<bool(const QWidget& viewport)>;

    /// Complete is the picture once both viewports were painted completely.
    PictureClock(QWidget& left, QWidget& right, IsComplete isComplete);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void notePicture();

    QWidget& left_;
    QWidget& right_;
    IsComplete isComplete_;
    bool leftIsComplete_ = false;
    bool rightIsComplete_ = false;
    bool isNoting_ = false;
    long long first_ = 0;
};

} // namespace fennik::bench
