#include "app/commands/KeyEquivalent.h"

#include "core/base/Utf8.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace fennik::app {

namespace {

using NamedKey = KeyEquivalent::NamedKey;

struct KeyOfMenus {
    std::string_view name;
    NamedKey key = {};
};

constexpr std::array<KeyOfMenus, 14> keysOfMenus{{
    {"space", NamedKey::space},
    {"tab", NamedKey::tab},
    {"return", NamedKey::enter},
    {"delete", NamedKey::backspace},
    {"forwarddelete", NamedKey::forwardDelete},
    {"escape", NamedKey::escape},
    {"up", NamedKey::up},
    {"down", NamedKey::down},
    {"left", NamedKey::left},
    {"right", NamedKey::right},
    {"home", NamedKey::home},
    {"end", NamedKey::end},
    {"pageup", NamedKey::pageUp},
    {"pagedown", NamedKey::pageDown},
}};

std::optional<char32_t> singleCharacter(std::string_view key) {
    if (key.empty())
        return std::nullopt;
    std::size_t position = 0;
    const auto character = Utf8::next(key, position);
    return position == key.size() ? std::optional(character) : std::nullopt;
}

} // namespace

std::optional<KeyEquivalent> KeyEquivalent::of(const KeyCombo& combo) {
    if (combo.collidesWithTyping())
        return std::nullopt;
    if (const auto number = combo.functionKeyNumber()) {
        constexpr unsigned lastNumber = 15;
        if (*number < 1 || *number > lastNumber)
            return std::nullopt;
        return KeyEquivalent{firstFunctionKey + (*number - 1), combo.modifiers};
    }
    if (const auto* found = std::ranges::find(keysOfMenus, combo.key, &KeyOfMenus::name);
        found != keysOfMenus.end())
        return KeyEquivalent{found->key, combo.modifiers};
    if (const auto character = singleCharacter(combo.key))
        return KeyEquivalent{*character, combo.modifiers};
    return std::nullopt;
}

} // namespace fennik::app
