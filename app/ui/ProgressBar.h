#pragma once

#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

/// How far something has come, as a bar. What is paused or was stopped has grey dashes for a bar,
/// so that it is told apart without colours too.
class ProgressBar final : public QWidget {
    Q_OBJECT

public:
    enum class Kind { working, paused, asking, done, failed };

    ProgressBar(const Theme& theme, QWidget* parent);

    /// `fraction` is 0 to 1. Repaints when that makes a difference.
    void setProgress(double fraction, Kind kind);
    double fraction() const { return fraction_; }
    bool paused() const { return kind_ == Kind::paused; }

    QSize sizeHint() const override { return {theme_.px(330), theme_.px(6)}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int filled(double fraction) const { return qRound(width() * fraction); }
    QColor color() const;

    const Theme& theme_;
    double fraction_ = 0;
    Kind kind_ = Kind::working;
};

} // namespace fennik::ui
