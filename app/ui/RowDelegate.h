#pragma once

#include "app/ui/Icons.h"
#include "app/ui/PanelGeometry.h"
#include "app/ui/Theme.h"

#include <QAbstractItemDelegate>

namespace fennik::ui {

class PanelTable;

/// Paints icon and texts of the cells of a `PanelTable`, over the cursor that the table has
/// painted.
class RowDelegate final : public QAbstractItemDelegate {
public:
    RowDelegate(PanelTable& table, const Theme& theme, Icons& icons);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    struct Cell;
    void paintName(QPainter& painter, const Cell& cell) const;
    void paintText(QPainter& painter, const Cell& cell, const QString& text,
                   PanelColumn column) const;
    void paintTick(QPainter& painter, const Cell& cell) const;
    QColor markColor(const Cell& cell) const;
    QColor detailColor(const Cell& cell, PanelColumn column) const;

    PanelTable& table_;
    const Theme& theme_;
    Icons& icons_;
    PanelGeometry geometry_;
};

} // namespace fennik::ui
