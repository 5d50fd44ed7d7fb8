#pragma once

#include <cstdint>

/// Families of formats, as the library numbers them.
namespace fennik::ArchiveFamily {

inline constexpr std::uint32_t cpio = 0x10000;
inline constexpr std::uint32_t zip = 0x50000;
inline constexpr std::uint32_t raw = 0x90000;
inline constexpr std::uint32_t rar = 0xD0000;
inline constexpr std::uint32_t sevenZip = 0xE0000;
inline constexpr std::uint32_t rar5 = 0x100000;

} // namespace fennik::ArchiveFamily
