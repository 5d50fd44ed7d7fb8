#pragma once

#include "core/listing/FileItems.h"
#include "core/listing/NameSet.h"
#include "core/listing/PanelSort.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

namespace fennik {

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
