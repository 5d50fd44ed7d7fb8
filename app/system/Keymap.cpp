#include "app/system/Keymap.h"

#include "core/base/Utf8.h"

#include <algorithm>
#include <bitset>
#include <utility>
#include <xkbcommon/xkbcommon.h>

namespace fennik::system {

namespace {

constexpr std::size_t letterCount = 26;
constexpr std::uint32_t everyModifier = 0xFF;
/// X11's third and fifth modifier stand for the fifth and the third level by custom.
constexpr std::uint32_t levelModifiers = 1U << 5 | 1U << 7;

/// Whether a layout types Latin letters: at least half of them, because not every Latin alphabet
/// has them all.
bool typesLatin(xkb_keymap* keymap, xkb_layout_index_t layout) {
    std::bitset<letterCount> letters;
    const auto end = xkb_keymap_max_keycode(keymap) + 1;
    for (auto code = xkb_keymap_min_keycode(keymap); code != end; ++code) {
        const xkb_keysym_t* symbols = nullptr;
        if (layout < xkb_keymap_num_layouts_for_key(keymap, code) &&
            xkb_keymap_key_get_syms_by_level(keymap, code, layout, 0, &symbols) == 1 &&
            *symbols >= XKB_KEY_a && *symbols <= XKB_KEY_z)
            letters.set(*symbols - XKB_KEY_a);
    }
    return letters.count() >= letterCount / 2;
}

/// In UTF-8; empty for a symbol that is no character, which Enter, Esc and their like are not,
/// though they have control characters.
std::string characterOf(xkb_keysym_t symbol) {
    const auto code = xkb_keysym_to_utf32(symbol);
    if (code < 0x20 || (code >= 0x7F && code < 0xA0))
        return {};
    std::string text;
    Utf8::append(text, code);
    return text;
}

std::optional<Keymap> unitedStates() {
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
    const auto context = makeXkbContext();
    auto* keymap =
        context ? xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)
                : nullptr;
    return keymap ? std::optional<Keymap>(std::in_place, keymap) : std::nullopt;
}

} // namespace

void ReleaseXkbContext::operator()(xkb_context* context) const {
    xkb_context_unref(context);
}

XkbContext makeXkbContext() {
    XkbContext context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    // Its remarks say nothing to the user.
    if (context)
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    return context;
}

void Keymap::Release::operator()(xkb_keymap* keymap) const {
    xkb_keymap_unref(keymap);
}

void Keymap::Release::operator()(xkb_state* state) const {
    xkb_state_unref(state);
}

Keymap::Keymap(xkb_keymap* keymap) : keymap_(keymap), state_(xkb_state_new(keymap)) {
    for (Group group = 0; group < xkb_keymap_num_layouts(keymap); ++group)
        isLatin_.push_back(typesLatin(keymap, group));
}

std::optional<Keymap> Keymap::fromText(std::string_view text) {
    const auto context = makeXkbContext();
    auto* keymap =
        context ? xkb_keymap_new_from_buffer(context.get(), text.data(), text.size(),
                                             XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS)
                : nullptr;
    return keymap ? std::optional<Keymap>(std::in_place, keymap) : std::nullopt;
}

std::optional<Keymap::Group> Keymap::groupMaking(const app::PressedKey& key) const {
    for (Group group = 0; group < isLatin_.size(); ++group)
        if (symbol(key.scanCode, key.modifiers & everyModifier, group) == key.symbol)
            return group;
    return std::nullopt;
}

std::string Keymap::character(const app::PressedKey& key, Group group) const {
    if (group >= isLatin_.size() || !isLatin_[group]) {
        const auto latin = std::ranges::find(isLatin_, true);
        if (latin == isLatin_.end()) {
            static const auto american = unitedStates();
            return american ? american->character(key, 0) : std::string();
        }
        group = Group(latin - isLatin_.begin());
    }
    return characterOf(symbol(key.scanCode, key.modifiers & levelModifiers, group));
}

std::uint32_t Keymap::symbol(std::uint32_t scanCode, std::uint32_t modifiers, Group group) const {
    xkb_state_update_mask(state_.get(), modifiers, 0, 0, 0, 0, group);
    return xkb_state_key_get_one_sym(state_.get(), scanCode);
}

} // namespace fennik::system
