#pragma once

#include "core/listing/FileSorter.h"
#include "core/listing/MarkState.h"

#include <cstdint>

namespace fennik {

/// What the marked items are together. An item that changes its mark, or its size while it is
/// marked, is taken out or added in constant time.
struct MarkTotals {
    std::int64_t count = 0;
    /// Of files and of folders whose size was computed; a link to a folder has none of its own.
    /// Sums beyond 64 bits wrap round, so that taking out always undoes adding.
    std::int64_t bytes = 0;
    std::int64_t unsizedFolders = 0; ///< packages included

    /// Of all marked items; linear in the number of `items`.
    static MarkTotals of(const FileItems& items, const MarkState& marks,
                         const FolderSizes& folderSizes);

    /// Whether `bytes` is only a part of the whole.
    bool hasUnsizedFolders() const { return unsizedFolders > 0; }

    void add(const FileItemView& item, const FolderSizes& folderSizes);
    /// Takes out what `add` brought in with the same size.
    void remove(const FileItemView& item, const FolderSizes& folderSizes);

    friend bool operator==(const MarkTotals&, const MarkTotals&) = default;
};

} // namespace fennik
