#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// The path of an entry as `ArchiveEntry` has it, of the one that is written in an archive: without
/// "." and empty components, relative in any case, so that "/a//b/" is "a/b". Empty for what means
/// the root. None for what cannot be taken: ".." anywhere, more than 4,096 bytes, more than 256
/// folders one in another.
std::optional<std::string> entryPath(std::string_view written);

} // namespace fennik
