#pragma once

#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

/// The top edge of the output, which is dragged, or moved by the arrow keys.
class OutputEdge final : public QWidget {
    Q_OBJECT

public:
    OutputEdge(const Theme& theme, QWidget* parent);

signals:
    /// By so many pixels, upwards.
    void moved(int by);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const Theme& theme_;
    int grabbedAt_ = 0; ///< where in the edge
};

} // namespace fennik::ui
