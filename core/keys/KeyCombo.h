#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// A press as the rule for combinations reads it, in the terms of a Mac whatever the keyboard.
struct KeyEvent {
    static constexpr int keyDown = 10;
    static constexpr std::uint16_t noKeyCode = 0xFFFF;
    static constexpr std::uint32_t shiftFlag = 0x20000;
    static constexpr std::uint32_t controlFlag = 0x40000;
    static constexpr std::uint32_t optionFlag = 0x80000;
    static constexpr std::uint32_t commandFlag = 0x100000;

    int type = keyDown;
    std::uint16_t keyCode = noKeyCode; ///< of the Mac's virtual keys
    std::uint32_t modifierFlags = 0;   ///< other flags than the four above do not matter
    std::string characters = {};       ///< UTF-8, what the key types without modifiers
};

/// A key together with the modifiers held while it is pressed. A value.
struct KeyCombo {
    enum class Modifier : std::uint8_t { control = 1, option = 2, shift = 4, command = 8 };

    class Modifiers {
    public:
        constexpr Modifiers() = default;
        constexpr Modifiers(std::initializer_list<Modifier> members) {
            for (const auto member : members)
                insert(member);
        }
        /// None for a value above 15.
        static constexpr std::optional<Modifiers> fromRawValue(std::uint64_t value) {
            constexpr std::uint64_t everyMember = 15;
            if (value > everyMember)
                return std::nullopt;
            Modifiers result;
            result.rawValue_ = static_cast<std::uint8_t>(value);
            return result;
        }

        constexpr std::uint8_t rawValue() const { return rawValue_; }
        constexpr bool contains(Modifier member) const { return (rawValue_ & bit(member)) != 0; }
        constexpr void insert(Modifier member) {
            rawValue_ = static_cast<std::uint8_t>(rawValue_ | bit(member));
        }
        constexpr void remove(Modifier member) {
            rawValue_ = static_cast<std::uint8_t>(rawValue_ & ~bit(member));
        }

        friend constexpr bool operator==(Modifiers, Modifiers) = default;

    private:
        static constexpr unsigned bit(Modifier member) { return static_cast<unsigned>(member); }

        std::uint8_t rawValue_ = 0;
    };

    /// Lower case: the character that the key types without modifiers, "f1" … "f15", or a name of
    /// `KeyNames`.
    std::string key = {};
    Modifiers modifiers = {};

    /// Reads words joined by "+", such as "cmd+shift+g", in any case. Never fails: words that name
    /// no modifier are passed over, and an empty text has an empty key.
    static KeyCombo parse(std::string_view written);
    /// The combination of a press; none for other events, and where nothing tells which key it was.
    static std::optional<KeyCombo> fromEvent(const KeyEvent& event);

    /// As a Mac shows it, such as "⌥F5".
    std::string displayForm() const;
    /// The number of a function key, whatever it is; none for other keys.
    std::optional<unsigned> functionKeyNumber() const;
    bool isFunctionKey() const { return functionKeyNumber().has_value(); }
    /// Whether a text field would need the combination for itself.
    bool collidesWithTyping() const;
    /// What the combination does in the system, in Czech; none for one that an action may have.
    std::optional<std::string_view> reservedTitle() const;

    friend bool operator==(const KeyCombo&, const KeyCombo&) = default;
};

/// A combination in its display form at the beginning of a text.
struct DisplayedCombo {
    KeyCombo combo = {};
    std::size_t length = 0; ///< in bytes
};

/// Reads the combination that `text` begins with: symbols of modifiers and any key after them, or a
/// key of `KeyNames` alone. Other keys alone are text like any other, and give none.
std::optional<DisplayedCombo> leadingCombo(std::string_view text);

} // namespace fennik

template <>
struct std::hash<fennik::KeyCombo> {
    std::size_t operator()(const fennik::KeyCombo& combo) const noexcept;
};
