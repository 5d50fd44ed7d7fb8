#include "app/model/PanelModel.h"
#include "core/listing/FileMask.h"

namespace fennik::app {

PanelChanges PanelModel::takeMarks() {
    shown_.markTotals = MarkTotals::of(items(), marks(), folderSizes());
    return PanelChange::marks;
}

void PanelModel::toggleMark(std::size_t row) {
    if (error() || row >= items().size() || items().view(row).isParentLink)
        return;
    const auto item = items().view(row);
    shown_.marks.toggle(item.name);
    if (marks().isMarked(item.name))
        shown_.markTotals.add(item, folderSizes());
    else
        shown_.markTotals.remove(item, folderSizes());
    emit changed(PanelChange::marks);
}

void PanelModel::markRange(std::ptrdiff_t from, std::ptrdiff_t to) {
    if (error() || items().empty())
        return;
    for (const auto row : shown_.marks.markRange(items(), from, to, Marking::mark))
        shown_.markTotals.add(items().view(row), folderSizes());
    emit changed(PanelChange::marks);
    setCursor(to);
}

void PanelModel::markAndMove(std::ptrdiff_t step) {
    if (const auto item = cursorItem(); item && !marks().isMarked(item->name))
        toggleMark(cursor());
    setCursor(static_cast<std::ptrdiff_t>(cursor()) + step);
}

void PanelModel::toggleMarkAndMoveDown() {
    if (!cursorItem())
        return;
    toggleMark(cursor());
    setCursor(static_cast<std::ptrdiff_t>(cursor()) + 1);
}

void PanelModel::markAll() {
    if (error())
        return;
    shown_.marks.markAll(items());
    emit changed(takeMarks());
}

void PanelModel::invertMarks() {
    if (error())
        return;
    shown_.marks.invert(items());
    emit changed(takeMarks());
}

bool PanelModel::unmarkAll() {
    if (error() || marks().marked().empty())
        return false;
    shown_.marks.unmarkAll();
    emit changed(takeMarks());
    return true;
}

void PanelModel::markByMask(const FileMask& mask, Marking marking) {
    if (error())
        return;
    shown_.marks.markByMask(items(), mask, marking);
    emit changed(takeMarks());
}

void PanelModel::unmark(const NameSet& names) {
    bool hasChanged = false;
    for (const auto& name : names) {
        if (!marks().isMarked(name))
            continue;
        shown_.marks.toggle(name);
        hasChanged = true;
    }
    if (hasChanged)
        emit changed(takeMarks());
}

MarkTotals PanelModel::totalsOf(const FileMask& mask) const {
    MarkTotals totals;
    for (std::size_t row = 0; row < items().size(); ++row) {
        if (const auto item = items().view(row); mask.matches(item))
            totals.add(item, folderSizes());
    }
    return totals;
}

} // namespace fennik::app
