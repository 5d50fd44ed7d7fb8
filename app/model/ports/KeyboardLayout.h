#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace fennik::app {

/// A key as the window system reports its press.
struct PressedKey {
    std::uint32_t scanCode = 0;  ///< its place, numbered as X11 and Wayland do; 0 when not told
    std::uint32_t modifiers = 0; ///< X11's: bits 0 to 7, and on X11 the group in bits 13 and 14
    std::uint32_t symbol = 0;    ///< X11's, that the key has made with its modifiers
};

/// What the keys of the keyboard at hand type, at any moment. Used on the main thread.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    /// The character in UTF-8 that names a key: what it types without Ctrl, Alt, Shift, Super and
    /// the locks on the current layout or, where that types no Latin letters, on the first one that
    /// does. AltGr counts, because it is the only way to some characters. Empty for a key that
    /// types no character; nothing when the layout cannot be learned.
    virtual std::optional<std::string> character(const PressedKey& key) = 0;
};

} // namespace fennik::app
