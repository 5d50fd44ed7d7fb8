#pragma once

#include "core/keys/KeyCombo.h"

#include <optional>
#include <variant>

namespace fennik::app {

/// A combination as a menu can have it. A menu's keys work even while a text field has the focus.
struct KeyEquivalent {
    enum class NamedKey {
        space,
        tab,
        enter, ///< the one beside the letters
        backspace,
        forwardDelete,
        escape,
        up,
        down,
        left,
        right,
        home,
        end,
        pageUp,
        pageDown,
    };
    /// The character that stands for F1; those for F2 to F15 follow.
    static constexpr char32_t firstFunctionKey = U'\uF704';

    std::variant<char32_t, NamedKey> key = {};
    KeyCombo::Modifiers modifiers = {};

    /// None for a combination that a text field needs for itself, and for a key that menus do not
    /// have: Insert, the keypad's own keys, function keys above F15.
    static std::optional<KeyEquivalent> of(const KeyCombo& combo);

    friend bool operator==(const KeyEquivalent&, const KeyEquivalent&) = default;
};

} // namespace fennik::app
