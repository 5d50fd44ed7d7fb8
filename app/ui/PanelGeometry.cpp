#include "app/ui/PanelGeometry.h"

#include <QHeaderView>

#include <algorithm>

namespace fennik::ui {

namespace {

struct ColumnRule {
    PanelColumn column;
    double width;
    double hiddenBelow; ///< of the whole table's width
};

constexpr ColumnRule rules[] = {
    {PanelColumn::size, 86, 258},
    {PanelColumn::modified, 142, 420},
    {PanelColumn::permissions, 98, 560},
};
constexpr double leastName = 160;

int lastShown(const QHeaderView& header) {
    int last = header.count() - 1;
    while (last > 0 && header.isSectionHidden(last))
        --last;
    return last;
}

} // namespace

void PanelGeometry::layOut(QHeaderView& header, int width) const {
    int left = width - rightMargin();
    for (const auto& [column, ownWidth, hiddenBelow] : rules) {
        const int section = static_cast<int>(column);
        const bool isHidden = width < theme_.px(hiddenBelow);
        header.setSectionHidden(section, isHidden);
        if (isHidden)
            continue;
        header.resizeSection(section, theme_.px(ownWidth));
        left -= theme_.px(ownWidth);
    }
    header.resizeSection(static_cast<int>(PanelColumn::name), std::max(left, theme_.px(leastName)));
    const int last = lastShown(header);
    header.resizeSection(last, header.sectionSize(last) + rightMargin());
}

QRectF PanelGeometry::textRect(QRectF cell, PanelColumn column, const QHeaderView& header) const {
    if (column == PanelColumn::name)
        cell.setLeft(cell.left() + nameLeft());
    if (static_cast<int>(column) == lastShown(header))
        cell.setRight(cell.right() - rightMargin());
    return cell;
}

} // namespace fennik::ui
