#pragma once

#include <string>
#include <string_view>

namespace fennik {

/// The bytes of a file name as text that can be shown on one line: valid UTF-8, where a newline is
/// "↵", a tab is "⇥", and every invalid byte, every other control character and the invisible
/// characters that would turn the direction of what follows are U+FFFD. For the eye only; never for
/// finding the file again.
std::string displayText(std::string_view name);

} // namespace fennik
