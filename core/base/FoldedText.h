#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// `text` without case and diacritics. Bytes that are not valid UTF-8 are replacement scalars. Safe
/// on any thread.
std::u32string foldedText(std::string_view text);

/// How many bytes at the begin of `name` are what `foldedPrefix` was made of; none where the name
/// begins otherwise. Marks belong to the letter they stand on. Safe on any thread.
std::optional<std::size_t> lengthOfPrefix(std::string_view name, std::u32string_view foldedPrefix);

} // namespace fennik
