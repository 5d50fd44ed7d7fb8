#pragma once

#include <string_view>

namespace fennik {

/// `text` without the white space at both ends: the scalars of the Unicode property White_Space,
/// line breaks among them. Bytes that are not valid UTF-8 are none.
std::string_view trimmed(std::string_view text);

} // namespace fennik
