#pragma once

#include "core/listing/FileItem.h"
#include "core/platform/FileSystem.h"

#include <expected>
#include <functional>
#include <string_view>

/// Reads a folder as fast as the system allows, entry by entry. Safe on several threads at once.
namespace fennik::DirectoryReader {

/// One raw entry. A package is not told from a directory here.
struct Entry {
    std::string_view name; ///< valid during the call of the consumer only
    FileKind kind = FileKind::other;
    std::int64_t size = 0;               ///< bytes of data; 0 for directories
    Date modified = Date::distantPast(); ///< the distant past when not known
    std::uint16_t mode = 0;              ///< the low 12 bits of the mode
    bool hiddenFlag = false;             ///< the system's own flag, not the leading dot
    bool isAlias = false;                ///< an alias file
};

using Consumer = std::function<void(const Entry&)>;

/// Hands every entry but "." and ".." to `consume`, on this thread, in the order of the system. A
/// volume that cannot be read in bulk is read through the portable folder stream. On failure
/// `consume` was never called.
[[nodiscard]] std::expected<void, PosixError> read(const FileSystem& files, const FileUrl& folder,
                                                   const Consumer& consume);

} // namespace fennik::DirectoryReader
