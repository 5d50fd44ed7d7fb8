#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The key by which names are ordered: natural (file2 before file10), without case and diacritics,
/// and with the Czech letters č ř š ž behind all forms of c r s z. Safe on any thread.
namespace fennik::NameKey {

/// Keys are compared element by element; a proper prefix is smaller. Every byte of `name` that is
/// not valid UTF-8 counts as U+FFFD.
std::vector<std::uint32_t> make(std::string_view name);

/// The element of one scalar that is not a digit.
std::uint32_t ofScalar(char32_t scalar);

/// Appends the key of `name` in a form that one `memcmp` orders: bytes 1 to 254, closed by a zero.
/// Two names have the order of their appended bytes exactly when `make` gives them that order.
void appendBytes(std::string_view name, std::string& bytes);

} // namespace fennik::NameKey
