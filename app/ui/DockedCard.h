#pragma once

#include "app/ui/Motion.h"
#include "app/ui/Theme.h"

#include <QWidget>

class QPainter;
class QPen;

namespace fennik::ui {

/// A card that stands at an edge of the window with a gap above it, and comes and goes in a moment
/// by growing and shrinking. It has a header and a body below that. Hidden at first.
class DockedCard : public QWidget {
    Q_OBJECT

public:
    bool isOnShow() const { return isOnShow_; }
    /// Comes or goes, in a moment.
    void setOnShow(bool isOnShow);
    /// In pixels, with the gap above the card.
    void setHeightLimit(int limit);

signals:
    /// The keyboard is to go back to the panel.
    void left();

protected:
    static constexpr double radius = 9;

    DockedCard(const Theme& theme, QWidget* parent);

    /// Of the gap, the header and the body, in pixels, if there is room for it.
    virtual int wantedHeight() const = 0;

    const Theme& theme() const { return theme_; }
    /// To be called when `wantedHeight` has changed.
    void takeHeight();
    /// The height once it has come.
    int wholeHeight() const;
    int heightLimit() const { return heightLimit_; }
    int top() const;
    int headerHeight() const;
    int headerMiddle() const;
    /// Where the body begins.
    int bodyTop() const;
    /// Everything but what is in the header and the body.
    void paintCard(QPainter& painter, const QColor& body, const QPen& outline) const;

private:
    const Theme& theme_;
    bool isOnShow_ = false;
    int heightLimit_ = QWIDGETSIZE_MAX;
    Motion motion_; ///< of the share of the height
};

} // namespace fennik::ui
