#pragma once

#include "core/listing/FileItems.h"
#include "core/listing/PanelSort.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace fennik {

/// Hashes names of either kind, so that a map of strings is searched without making one.
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const noexcept {
        return std::hash<std::string_view>()(name);
    }
};

/// Computed sizes of folders in bytes, by item name.
using FolderSizes = std::unordered_map<std::string, std::int64_t, NameHash, std::equal_to<>>;

namespace FileSorter {

/// `items` in the order of `sort`: the parent entry first, then folders (packages are none), then
/// the rest, whatever the direction. Folders without an entry in `folderSizes` count as smaller
/// than all others. Equal items are always ordered by name A to Z, and names with equal keys by
/// their bytes. Linear-logarithmic; keys are made once an item.
FileItems sort(const FileItems& items, PanelSort sort, const FolderSizes& folderSizes);

} // namespace FileSorter

} // namespace fennik
