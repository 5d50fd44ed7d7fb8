#include "app/ui/ActionIcons.h"

#include "app/ui/Text.h"

#include <algorithm>

namespace fennik::ui::ActionIcons {

namespace {

constexpr Entry table[] = {
    {"archivebox", "archive"},
    {"arrow.clockwise", "rotate-cw"},
    {"arrow.down.right.circle", "circle-arrow-out-down-right"},
    {"arrow.left.arrow.right", "arrow-left-right"},
    {"arrow.left.square", "square-arrow-left"},
    {"arrow.right.doc.on.clipboard", "file-output"},
    {"arrow.right.square", "square-arrow-right"},
    {"arrow.turn.left.up", "corner-left-up"},
    {"arrow.up.arrow.down", "arrow-up-down"},
    {"arrow.uturn.backward", "undo-2"},
    {"calendar", "calendar"},
    {"character.cursor.ibeam", "text-cursor-input"},
    {"chart.bar.doc.horizontal", "chart-bar"},
    {"checkmark.circle", "circle-check"},
    {"checkmark.circle.fill", "check-check"},
    {"chevron.left", "chevron-left"},
    {"chevron.right", "chevron-right"},
    {"chevron.right.square", "square-chevron-right"},
    {"circle.dashed", "circle-dashed"},
    {"circle.lefthalf.filled", "contrast"},
    {"doc.on.clipboard", "clipboard"},
    {"doc.on.clipboard.fill", "clipboard-paste"},
    {"doc.on.doc", "copy"},
    {"doc.text", "file-text"},
    {"equal.square", "square-equal"},
    {"eye", "eye"},
    {"eye.circle", "scan-eye"},
    {"folder.badge.plus", "folder-plus"},
    {"house", "house"},
    {"info.circle", "info"},
    {"link", "link"},
    {"list.bullet.rectangle", "layout-list"},
    {"macwindow", "app-window"},
    {"minus.circle", "circle-minus"},
    {"pencil", "pencil"},
    {"plus.circle", "circle-plus"},
    {"plus.square.on.square", "copy-plus"},
    {"rectangle.split.2x1", "columns-2"},
    {"shippingbox.and.arrow.backward", "package-open"},
    {"star", "star"},
    {"star.circle", "star-plus"},
    {"sum", "sigma"},
    {"terminal", "square-terminal"},
    {"text.cursor", "text-cursor"},
    {"textformat", "case-sensitive"},
    {"trash", "trash-2"},
    {"xmark.circle", "circle-x"},
    {"xmark.square", "square-x"},
};
static_assert(std::ranges::is_sorted(table, {}, &Entry::symbol));

} // namespace

std::span<const Entry> all() {
    return table;
}

QString iconOf(std::string_view symbol) {
    const auto* found = std::ranges::lower_bound(table, symbol, {}, &Entry::symbol);
    const bool isKnown = found != std::end(table) && found->symbol == symbol;
    return isKnown ? fromUtf8(found->icon) : QString();
}

} // namespace fennik::ui::ActionIcons
