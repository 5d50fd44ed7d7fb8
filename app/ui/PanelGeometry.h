#pragma once

#include "app/ui/PanelTableModel.h"
#include "app/ui/Theme.h"

#include <QRectF>

class QHeaderView;

namespace fennik::ui {

/// The measures that the rows of a panel and their header share, in device-independent pixels.
class PanelGeometry {
public:
    explicit PanelGeometry(const Theme& theme) : theme_(theme) {}

    int rowHeight() const { return theme_.rowHeight(); }
    int gutter() const { return theme_.px(24); } ///< left of the icon, for the tick
    int icon() const { return theme_.px(16); }
    int iconGap() const { return theme_.px(8); }
    int rightMargin() const { return theme_.px(12); }
    int nameLeft() const { return gutter() + icon() + iconGap(); }

    /// Gives every column of `header` its width within `width`, and hides those without room.
    void layOut(QHeaderView& header, int width) const;
    /// The part of a cell in which its text stands.
    QRectF textRect(QRectF cell, PanelColumn column, const QHeaderView& header) const;

private:
    const Theme& theme_;
};

} // namespace fennik::ui
