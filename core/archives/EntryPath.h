#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// Bytes of the path of an entry as it is written in an archive.
constexpr std::size_t longestEntryPath = 4096;
/// Its bytes after decoding, where each byte has become U+FFFD and two digits.
constexpr std::size_t longestDecodedPath = 5 * longestEntryPath;
/// Folders one in another that an entry may lie in.
constexpr std::size_t mostEntryFolders = 256;

/// The path of an entry as `ArchiveEntry` has it, of the one that is written in an archive: without
/// "." and empty components, relative in any case, so that "/a//b/" is "a/b". Empty for what means
/// the root. None for what cannot be taken: ".." anywhere, or beyond the limits above.
std::optional<std::string> entryPath(std::string_view written);

/// Whether a path, decoded or not, is as `entryPath` gives it, other than that of the root, and
/// holds no NUL: put on a disk, it leads down from a folder and nowhere else.
bool isEntryPath(std::string_view path);

} // namespace fennik
