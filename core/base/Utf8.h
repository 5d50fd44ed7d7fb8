#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace fennik::Utf8 {

/// What an invalid byte counts as.
inline constexpr char32_t replacement = U'\uFFFD';

/// Decodes the scalar that begins at `position` and moves `position` behind it. A byte that is no
/// part of valid UTF-8 (RFC 3629: overlong forms, surrogates and values above U+10FFFF included)
/// is one replacement scalar of its own. `position` has to lie inside `bytes`.
char32_t next(std::string_view bytes, std::size_t& position);

void append(std::string& bytes, char32_t scalar);

bool isValid(std::string_view bytes);

} // namespace fennik::Utf8
