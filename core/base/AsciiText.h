#pragma once

#include <string>
#include <string_view>

namespace fennik {

/// `text` with the letters A to Z in lower case and all other bytes as they are, in every locale.
std::string asciiLowered(std::string_view text);

} // namespace fennik
