#pragma once

#include "app/ui/Theme.h"

#include <QAbstractSlider>

namespace fennik::ui {

/// A level out of a few, on a track with a mark for each. Arrows and the mouse move it.
class LevelSlider final : public QAbstractSlider {
    Q_OBJECT

public:
    /// `name` is what screen readers call it.
    LevelSlider(const QString& name, int least, int most, const Theme& theme, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    double knobRadius() const;
    /// The middle of the knob at a level.
    double positionOf(int level) const;
    int levelAt(double x) const;

    const Theme& theme_;
};

} // namespace fennik::ui
