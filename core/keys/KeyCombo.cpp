#include "core/keys/KeyCombo.h"

#include "core/base/AsciiText.h"
#include "core/base/Utf8.h"
#include "core/keys/KeyNames.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ranges>
#include <unordered_map>

namespace fennik {

namespace {

using Modifier = KeyCombo::Modifier;
using Modifiers = KeyCombo::Modifiers;

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

// Nearly every key is written in ASCII, and the library is large where nothing else needs it.
std::string lowered(std::string_view text) {
    return isAscii(text) ? asciiLowered(text) : utf8(unicode(text).toLower(icu::Locale::getRoot()));
}

std::string uppered(std::string_view text) {
    return isAscii(text) ? asciiUppered(text) : utf8(unicode(text).toUpper(icu::Locale::getRoot()));
}

struct ModifierSign {
    Modifier modifier = {};
    std::string_view symbol;
    std::uint32_t eventFlag = 0;
};

/// In the order of display.
constexpr std::array<ModifierSign, 4> modifierSigns{{
    {Modifier::control, "⌃", KeyEvent::controlFlag},
    {Modifier::option, "⌥", KeyEvent::optionFlag},
    {Modifier::shift, "⇧", KeyEvent::shiftFlag},
    {Modifier::command, "⌘", KeyEvent::commandFlag},
}};

struct ModifierWord {
    std::string_view word;
    Modifier modifier = {};
};

constexpr std::array<ModifierWord, 8> modifierWords{{
    {"ctrl", Modifier::control},
    {"control", Modifier::control},
    {"opt", Modifier::option},
    {"option", Modifier::option},
    {"alt", Modifier::option},
    {"shift", Modifier::shift},
    {"cmd", Modifier::command},
    {"command", Modifier::command},
}};

/// The combinations with a meaning of their own in every text field, Shift aside.
constexpr std::array<std::string_view, 11> typedWithCommand{
    "a", "c", "v", "x", "z", "delete", "forwarddelete", "left", "right", "up", "down",
};
constexpr std::array<std::string_view, 4> typedWithOption{"delete", "left", "right",
                                                          "forwarddelete"};

std::unordered_map<KeyCombo, std::string_view> reservedCombos() {
    return {
        {KeyCombo::parse("cmd+q"), "Ukončit appku"},
        {KeyCombo::parse("cmd+h"), "Skrýt appku"},
        {KeyCombo::parse("cmd+m"), "Minimalizovat okno"},
        {KeyCombo::parse("cmd+,"), "Nastavení"},
        {KeyCombo::parse("cmd+tab"), "Přepínání appek (systém)"},
        {KeyCombo::parse("cmd+space"), "Spotlight (systém)"},
        {KeyCombo::parse("cmd+`"), "Přepínání oken (systém)"},
        {KeyCombo::parse("cmd+opt+escape"), "Vynutit ukončení (systém)"},
    };
}

} // namespace

KeyCombo KeyCombo::parse(std::string_view written) {
    const auto text = lowered(written);
    std::string_view words;
    KeyCombo result;
    if (text.ends_with("++")) { // the key is the plus sign itself
        words = std::string_view(text).substr(0, text.size() - 2);
        result.key = "+";
    } else if (const auto plus = text.rfind('+'); plus != std::string::npos) {
        words = std::string_view(text).substr(0, plus);
        result.key = text.substr(plus + 1);
    } else {
        result.key = text;
    }
    for (const auto piece : std::views::split(words, '+')) {
        const std::string_view word(piece.begin(), piece.end());
        const auto* found = std::ranges::find(modifierWords, word, &ModifierWord::word);
        if (found != modifierWords.end())
            result.modifiers.insert(found->modifier);
    }
    return result;
}

std::optional<KeyCombo> KeyCombo::fromEvent(const KeyEvent& event) {
    if (event.type != KeyEvent::keyDown)
        return std::nullopt;
    KeyCombo result;
    for (const auto& sign : modifierSigns)
        if ((event.modifierFlags & sign.eventFlag) != 0)
            result.modifiers.insert(sign.modifier);
    if (const auto name = KeyNames::nameOf(event.keyCode)) {
        result.key = *name;
        return result;
    }
    const auto characters = lowered(event.characters);
    if (characters.empty())
        return std::nullopt;
    std::size_t position = 0;
    Utf8::append(result.key, Utf8::next(characters, position));
    return result;
}

std::string KeyCombo::displayForm() const {
    std::string result;
    for (const auto& sign : modifierSigns)
        if (modifiers.contains(sign.modifier))
            result += sign.symbol;
    if (const auto display = KeyNames::displayOf(key))
        return result += *display;
    return result += uppered(key);
}

std::optional<DisplayedCombo> leadingCombo(std::string_view text) {
    DisplayedCombo result;
    const auto take = [&](std::size_t length) {
        result.length += length;
        text.remove_prefix(length);
    };
    for (const auto& sign : modifierSigns) {
        if (text.starts_with(sign.symbol)) {
            result.combo.modifiers.insert(sign.modifier);
            take(sign.symbol.size());
        }
    }
    for (const auto& key : KeyNames::named()) {
        if (text.starts_with(key.display)) {
            result.combo.key = key.name;
            take(key.display.size());
            return result;
        }
    }
    if (result.length == 0 || text.empty() || text.front() == ' ')
        return std::nullopt;
    std::size_t length = 0;
    Utf8::next(text, length);
    if (text.front() == 'F')
        length = std::min(text.find_first_not_of("0123456789", length), text.size());
    result.combo.key = lowered(text.substr(0, length));
    take(length);
    return result;
}

std::optional<unsigned> KeyCombo::functionKeyNumber() const {
    const bool hasShape = key.size() >= 2 && key.front() == 'f';
    if (!hasShape)
        return std::nullopt;
    unsigned number = 0;
    const auto* end = key.data() + key.size();
    const auto [stop, error] = std::from_chars(key.data() + 1, end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

bool KeyCombo::collidesWithTyping() const {
    auto withoutShift = modifiers;
    withoutShift.remove(Modifier::shift);
    const auto isAmong = [this](const auto& keys) {
        return std::ranges::find(keys, key) != keys.end();
    };
    if (withoutShift == Modifiers())
        return !isFunctionKey();
    if (withoutShift == Modifiers{Modifier::command})
        return isAmong(typedWithCommand);
    return withoutShift == Modifiers{Modifier::option} && isAmong(typedWithOption);
}

std::optional<std::string_view> KeyCombo::reservedTitle() const {
    static const auto reserved = reservedCombos();
    const auto found = reserved.find(*this);
    return found == reserved.end() ? std::nullopt : std::optional(found->second);
}

} // namespace fennik

std::size_t std::hash<fennik::KeyCombo>::operator()(const fennik::KeyCombo& combo) const noexcept {
    constexpr std::size_t modifierSets = 16;
    return std::hash<std::string>()(combo.key) * modifierSets + combo.modifiers.rawValue();
}
