#pragma once

#include "app/ui/Theme.h"

#include <QWidget>

namespace fennik::ui {

/// The shadow that a card, menu or toast throws on what lies below it. A sibling under its
/// `caster`, whose place and visibility it follows; the mouse goes through it. Drawn once for each
/// theme.
class Shadow final : public QWidget {
    Q_OBJECT

public:
    enum class Depth { dialog, menu };

    /// `radius` is of the caster's corners. Belongs to the caster's parent, and goes with the
    /// caster.
    Shadow(QWidget& caster, Depth depth, double radius, const Theme& theme);

    void setOpacity(double opacity);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    QPixmap drawn() const;

    QWidget& caster_;
    const Theme& theme_;
    int blur_;
    int offset_;
    double radius_;
    double opacity_ = 1;
    QPixmap picture_; ///< of the smallest caster; its middle is stretched
};

} // namespace fennik::ui
