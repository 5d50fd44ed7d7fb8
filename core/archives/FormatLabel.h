#pragma once

#include "core/archives/EntryStream.h"

#include <string>

namespace fennik {

/// Families of formats, as the library numbers them.
namespace ArchiveFamily {
inline constexpr std::uint32_t zip = 0x50000;
inline constexpr std::uint32_t raw = 0x90000;
inline constexpr std::uint32_t rar = 0xD0000;
inline constexpr std::uint32_t sevenZip = 0xE0000;
inline constexpr std::uint32_t rar5 = 0x100000;
} // namespace ArchiveFamily

/// "ZIP", "7z", "tar.gz": what the format of an archive is called for the user. Empty where nothing
/// is known of it.
std::string formatLabel(const ArchiveFacts& facts, const FileUrl& url);

} // namespace fennik
