#pragma once

#include <string>
#include <string_view>

namespace fennik::app {

/// `text`, whatever its bytes, as one word of a POSIX shell: between single quotes, with each
/// single quote of its own as '\''.
std::string shellQuoted(std::string_view text);

} // namespace fennik::app
