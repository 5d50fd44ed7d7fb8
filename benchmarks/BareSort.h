#pragma once

#include "core/listing/FileItems.h"

#include <cstdint>
#include <vector>

/// The order of a panel sorted by name A to Z, made in two plain ways: what Fennik's sorting is
/// measured against. Both give the rows of `items` in their new order.
namespace fennik::bench {

using Order = std::vector<std::uint32_t>;

/// Byte keys in one arena and multikey quicksort on records of 16 bytes.
Order sortInArena(const FileItems& items);
/// One `NameKey::make` per item and `std::sort`.
Order sortPlainly(const FileItems& items);

} // namespace fennik::bench
