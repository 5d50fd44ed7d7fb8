#include "app/system/Keymap.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <xkbcommon/xkbcommon.h>

namespace fennik::system {

namespace {

constexpr std::size_t letterCount = 26;

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

} // namespace

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

std::optional<Keymap::Group> Keymap::latinGroup(Group group) const {
    if (group < isLatin_.size() && isLatin_[group])
        return group;
    const auto found = std::ranges::find(isLatin_, true);
    if (found == isLatin_.end())
        return std::nullopt;
    return Group(found - isLatin_.begin());
}

std::string Keymap::character(std::uint32_t scanCode, std::uint32_t modifiers, Group group) const {
    // X11's third and fifth modifier stand for the fifth and the third level by custom.
    constexpr std::uint32_t levelModifiers = 1U << 5 | 1U << 7;
    xkb_state_update_mask(state_.get(), modifiers & levelModifiers, 0, 0, 0, 0, group);
    const auto symbol = xkb_state_key_get_one_sym(state_.get(), scanCode);
    // Enter, Esc and their like have a control character for a symbol.
    const auto code = xkb_keysym_to_utf32(symbol);
    if (code < 0x20 || (code >= 0x7F && code < 0xA0))
        return {};
    std::array<char, 8> text{};
    const int size = xkb_keysym_to_utf8(symbol, text.data(), text.size());
    return size > 1 ? std::string(text.data(), std::size_t(size) - 1) : std::string();
}

} // namespace fennik::system
