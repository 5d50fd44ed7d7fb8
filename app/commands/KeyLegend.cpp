#include "app/commands/KeyLegend.h"

#include "app/commands/catalogue/KAction.h"

#include <algorithm>
#include <array>
#include <utility>

namespace fennik::app::KeyLegend {

namespace {

using Modifier = KeyCombo::Modifier;

struct ModifierLegend {
    Modifier modifier = {};
    std::string_view legend;
};

/// In the order of writing.
constexpr std::array<ModifierLegend, 4> modifierLegends{{
    {Modifier::command, "Ctrl"},
    {Modifier::option, "Alt"},
    {Modifier::shift, "Shift"},
    {Modifier::control, "Super"},
}};

struct KeyWord {
    std::string_view key;
    std::string_view legend;
};

/// The keys that a Mac shows as symbols and others do not.
constexpr std::array<KeyWord, 10> keyWords{{
    {"tab", "Tab"},
    {"return", "Enter"},
    {"enter", "Num Enter"},
    {"delete", "Backspace"},
    {"forwarddelete", "Delete"},
    {"escape", "Esc"},
    {"home", "Home"},
    {"end", "End"},
    {"pageup", "PgUp"},
    {"pagedown", "PgDn"},
}};

/// `combo` with `to` in place of `from`; none where it lacks the one or has the other.
std::optional<KeyCombo> exchanged(const KeyCombo& combo, Modifier from, Modifier to) {
    if (!combo.modifiers.contains(from) || combo.modifiers.contains(to))
        return std::nullopt;
    auto result = combo;
    result.modifiers.remove(from);
    result.modifiers.insert(to);
    return result;
}

} // namespace

std::optional<KeyCombo> controlTwin(const KeyCombo& combo) {
    return exchanged(combo, Modifier::command, Modifier::control);
}

std::string legend(const KeyCombo& combo, const ShortcutMap& map) {
    auto pressed = combo;
    if (auto twin = exchanged(combo, Modifier::control, Modifier::command);
        twin && KActions::owners(map, *twin).empty())
        pressed = std::move(*twin);
    std::string result;
    for (const auto& [modifier, word] : modifierLegends)
        if (pressed.modifiers.contains(modifier))
            result.append(word).append("+");
    if (const auto* found = std::ranges::find(keyWords, pressed.key, &KeyWord::key);
        found != keyWords.end())
        return result.append(found->legend);
    return result + KeyCombo{pressed.key}.displayForm();
}

std::string withLegends(std::string_view sentence, const ShortcutMap& map) {
    std::string result;
    while (!sentence.empty()) {
        if (const auto found = leadingCombo(sentence)) {
            result += legend(found->combo, map);
            sentence.remove_prefix(found->length);
        } else {
            result += sentence.front();
            sentence.remove_prefix(1);
        }
    }
    return result;
}

} // namespace fennik::app::KeyLegend
