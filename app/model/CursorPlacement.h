#pragma once

#include "core/listing/FileItems.h"

#include <cstddef>
#include <optional>
#include <string>

namespace fennik::app::CursorPlacement {

/// The row of the item called `wanted`, else the first row.
std::size_t byName(const FileItems& items, const std::optional<std::string>& wanted);

/// Where the cursor goes when `before`, with the cursor on `row`, becomes `after`: to the same
/// item, else to the nearest row of `before` whose item is still there (the later one of two), else
/// to the first row. Linear when the item is gone.
std::size_t afterReload(const FileItems& before, std::size_t row, const FileItems& after);

} // namespace fennik::app::CursorPlacement
