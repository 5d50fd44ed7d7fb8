#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace fennik {

/// A key that has a name instead of a character of its own.
struct NamedKey {
    std::string_view name;      ///< as `KeyCombo::key` has it
    std::string_view display;   ///< on a Mac's keyboards and in its menus
    std::uint16_t keyCode = {}; ///< of a Mac's virtual keys
};

/// The keys that are known by their place on the keyboard: the named ones, the function keys and
/// the digits above the letters. Safe on any thread.
namespace KeyNames {

/// The 19 keys with names, function keys not among them.
std::span<const NamedKey> named();
/// How the key called `name` is displayed; none for a name that is not among `named`.
std::optional<std::string_view> displayOf(std::string_view name);

/// The virtual key code of a named key, of "f1" … "f15" or of a digit.
std::optional<std::uint16_t> keyCodeOf(std::string_view name);
/// The key at this place; none for a key that counts as the character it types.
std::optional<std::string_view> nameOf(std::uint16_t keyCode);

} // namespace KeyNames

} // namespace fennik
