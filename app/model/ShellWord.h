#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace fennik::app {

/// The one word of a POSIX shell that `text` is, with its quotes and backslashes taken off; none
/// where it is more than one word, or a quote does not end. Bytes of any encoding; nothing is
/// expanded.
std::optional<std::string> shellWord(std::string_view text);

} // namespace fennik::app
