#pragma once

#include <string>
#include <string_view>

namespace fennik {

/// `text` with the letters A to Z in the other case and all other bytes as they are, in every
/// locale.
std::string asciiLowered(std::string_view text);
std::string asciiUppered(std::string_view text);

/// Whether all bytes are below 128.
bool isAscii(std::string_view text);

} // namespace fennik
