#pragma once

#include "core/base/FileUrl.h"

#include <expected>
#include <string>

namespace fennik::Relocation {

/// Moves one item to a path that must be free, the folders above it included: by a rename, or
/// across volumes by copying, where the item goes from its first place only once the copy is
/// complete, unchanged meanwhile and on the disk. Never replaces anything. On failure nothing is
/// left at `to`, the item is where it was, and the error is the reason, as it stands behind a
/// colon: it names what is to blame only where that is not the item itself.
std::expected<void, std::string> move(const FileUrl& from, const FileUrl& to);

} // namespace fennik::Relocation
