#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"

#include <expected>
#include <functional>
#include <string>

namespace fennik::TrashCan {

/// Moves an item between volumes, so that it is complete and on the disk at the second place
/// before it goes from the first. The error is the reason, as it stands behind a colon; the item is
/// where it was then.
using Relocate =
    std::function<std::expected<void, std::string>(const FileUrl& from, const FileUrl& to)>;

/// Moves the item into the desktop's own trash: the one of its volume, else, by `relocate`, the one
/// in the home folder. Returns where it lies now. The error is the reason, as it stands behind a
/// colon; the item is where it was then. Never moved are mount points, the home folder, a trash,
/// what contains one of them, and what lies in a trash. Sources on Linux: the FreeDesktop.org Trash
/// standard 1.0.
std::expected<FileUrl, std::string> trash(const FileUrl& item, const Relocate& relocate);

/// Removes the trash's record of an item that is not at `place` any more.
void forget(const FileUrl& place);

} // namespace fennik::TrashCan
