#pragma once

#include "core/listing/FileItem.h"

#include <cstdint>
#include <string>

/// Numbers, durations and rights as texts of the user interface. Safe on any thread.
namespace fennik::Format {

/// A size with a decimal unit (1 kB = 1000 bytes) as Czech writes it: whole bytes below
/// 1000, kB with one decimal below 10, from MB on three significant digits. A no-break space stands
/// before the unit.
std::string bytes(std::int64_t count);

/// All digits, in groups of three with U+202F between them.
std::string grouped(std::int64_t number);

/// Whole seconds as "m:ss", from an hour on as "h:mm:ss"; "–" when negative or not finite.
std::string duration(double seconds);

enum class Folder { no, yes };
/// Ten characters such as "drwxr-xr-x"; set-id and sticky bits are not shown.
std::string permissions(std::uint16_t mode, Folder folder);
std::string permissions(const FileItemView& item);

} // namespace fennik::Format
