#pragma once

#include "app/ui/Theme.h"

#include <QBasicTimer>
#include <QWidget>

namespace fennik::ui {

/// The thin stripe under the path bar that moves while a folder is loading. With reduced motion it
/// is a dashed line that stands still.
class LoadingStripe final : public QWidget {
    Q_OBJECT

public:
    LoadingStripe(const Theme& theme, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    const Theme& theme_;
    QBasicTimer timer_;
    int step_ = 0;
};

/// Grey bars where rows are going to be.
class LoadingSkeleton final : public QWidget {
    Q_OBJECT

public:
    LoadingSkeleton(const Theme& theme, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme_;
};

} // namespace fennik::ui
