#include "core/listing/MarkTotals.h"

namespace fennik {

namespace {

/// The totals of one marked item.
MarkTotals alone(const FileItemView& item, const FolderSizes& folderSizes) {
    if (!item.isFolderLike())
        return {.count = 1, .bytes = item.size};
    const auto known = folderSizes.find(item.name);
    if (known != folderSizes.end())
        return {.count = 1, .bytes = known->second};
    return {.count = 1, .unsizedFolders = item.isLink() ? 0 : 1};
}

std::int64_t wrapped(std::uint64_t number) {
    return static_cast<std::int64_t>(number);
}

} // namespace

MarkTotals MarkTotals::of(const FileItems& items, const MarkState& marks,
                          const FolderSizes& folderSizes) {
    MarkTotals totals;
    const auto count = std::ssize(marks.marked());
    for (std::size_t row = 0; row < items.size() && totals.count < count; ++row) {
        const auto item = items.view(row);
        if (marks.isMarked(item.name))
            totals.add(item, folderSizes);
    }
    return totals;
}

void MarkTotals::add(const FileItemView& item, const FolderSizes& folderSizes) {
    const auto one = alone(item, folderSizes);
    count += one.count;
    bytes = wrapped(static_cast<std::uint64_t>(bytes) + static_cast<std::uint64_t>(one.bytes));
    unsizedFolders += one.unsizedFolders;
}

void MarkTotals::remove(const FileItemView& item, const FolderSizes& folderSizes) {
    const auto one = alone(item, folderSizes);
    count -= one.count;
    bytes = wrapped(static_cast<std::uint64_t>(bytes) - static_cast<std::uint64_t>(one.bytes));
    unsizedFolders -= one.unsizedFolders;
}

} // namespace fennik
