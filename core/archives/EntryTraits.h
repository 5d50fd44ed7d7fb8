#pragma once

#include "core/archives/ArchiveEntry.h"
#include "core/archives/ArchiveError.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace fennik {

/// The last component of its path.
std::string_view nameOf(const ArchiveEntry& entry);

/// Its mode without what would give programs and folders rights of their own.
std::uint16_t plainMode(const ArchiveEntry& entry);

/// Why the entry cannot be taken.
std::string sentenceOf(const ArchiveEntry& entry, const ArchiveError& error);
std::string sentenceOf(const ArchiveEntry& entry, std::string_view reason);

} // namespace fennik
