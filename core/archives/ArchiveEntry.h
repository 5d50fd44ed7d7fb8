#pragma once

#include "core/base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace fennik {

/// One item inside an archive.
struct ArchiveEntry {
    enum class Kind : std::uint8_t { file, directory, symlink, hardlink };

    /// UTF-8 with "/" between its components, none of which is empty, "." or "..".
    std::string path = {};
    Kind kind = Kind::file;
    std::int64_t size = 0; ///< bytes; 0 for everything but files, and where it is not known
    Date modified = {};
    std::uint16_t mode = 0; ///< the low 12 bits
    /// Of a symbolic link as it is written; of a hard link the path of the entry it is another name
    /// of.
    std::optional<std::string> linkTarget = {};
    bool encrypted = false; ///< its data
    bool implicit = false;  ///< a folder that is there only because something lies below it

    friend bool operator==(const ArchiveEntry&, const ArchiveEntry&) = default;
};

} // namespace fennik
