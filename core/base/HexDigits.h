#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// The byte that two hexadecimal digits of either case at the beginning of `text` stand for.
std::optional<std::uint8_t> hexByte(std::string_view text);

enum class HexCase { lower, upper };
/// The two digits of `byte`.
std::string hexDigits(std::uint8_t byte, HexCase letters);

} // namespace fennik
