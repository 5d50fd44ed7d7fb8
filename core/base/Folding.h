#pragma once

#include <string>

namespace fennik {

/// `scalar` without case and diacritics, independent of any locale: full case folding, then
/// canonical decomposition, then without non-spacing marks (The Unicode Standard, 3.13 and 3.11).
/// More than one scalar for such as ß, none for a lone mark. Safe on any thread.
std::u32string folded(char32_t scalar);

} // namespace fennik
