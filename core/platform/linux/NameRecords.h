#pragma once

#include "core/platform/FileSystem.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace fennik {

/// One name of a folder as getdents64 wrote it.
struct NameRecord {
    std::string_view name;       ///< ends with a zero byte; valid as long as the buffer
    unsigned char entryType = 0; ///< a DT_ constant, DT_UNKNOWN on file systems that do not say
};

/// Walks over the names in a buffer, without "." and "..".
class NameRecords {
public:
    explicit NameRecords(std::span<const char> buffer) : left_(buffer) {}
    std::optional<NameRecord> next();

private:
    std::span<const char> left_;
};

/// Fills `buffer` with the next names of an open folder. Gives the length of what it wrote; 0 at
/// the end of the folder.
FileSystem::Result<std::size_t> readNames(int folder, std::span<char> buffer);

} // namespace fennik
