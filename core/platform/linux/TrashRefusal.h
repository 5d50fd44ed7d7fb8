#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/Volumes.h"

#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// Why an item must never go to a trash, if so: it is or holds a mounted volume, the home folder or
/// a trash, it lies in one already, or it holds what the user could not remove from there. `item`
/// is its real path, without following the item itself.
std::optional<std::string> trashRefusal(const FileUrl& item, const std::vector<Volume>& volumes);

} // namespace fennik
