#include "core/keys/KeyNames.h"

#include <algorithm>
#include <array>

namespace fennik::KeyNames {

namespace {

/// The key called "help" on a Mac lies where other keyboards have Insert, and serves as that.
constexpr std::array<NamedKey, 19> namedKeys{{
    {"space", "Mezerník", 49},   {"tab", "⇥", 48},        {"return", "↩", 36},
    {"enter", "⌅", 76},          {"delete", "⌫", 51},     {"forwarddelete", "⌦", 117},
    {"escape", "⎋", 53},         {"up", "↑", 126},        {"down", "↓", 125},
    {"left", "←", 123},          {"right", "→", 124},     {"home", "↖", 115},
    {"end", "↘", 119},           {"pageup", "⇞", 116},    {"pagedown", "⇟", 121},
    {"help", "Insert", 114},     {"numplus", "Num+", 69}, {"numminus", "Num\u2212", 78},
    {"nummultiply", "Num*", 67},
}};

struct PlacedKey {
    std::string_view name;
    std::uint16_t keyCode = {};
};

constexpr std::array<PlacedKey, 25> functionAndDigitKeys{{
    {"f1", 122},  {"f2", 120}, {"f3", 99},   {"f4", 118},  {"f5", 96},   {"f6", 97},   {"f7", 98},
    {"f8", 100},  {"f9", 101}, {"f10", 109}, {"f11", 103}, {"f12", 111}, {"f13", 105}, {"f14", 107},
    {"f15", 113}, {"1", 18},   {"2", 19},    {"3", 20},    {"4", 21},    {"5", 23},    {"6", 22},
    {"7", 26},    {"8", 28},   {"9", 25},    {"0", 29},
}};

} // namespace

std::span<const NamedKey> named() {
    return namedKeys;
}

std::optional<std::string_view> displayOf(std::string_view name) {
    const auto* found = std::ranges::find(namedKeys, name, &NamedKey::name);
    return found == namedKeys.end() ? std::nullopt : std::optional(found->display);
}

std::optional<std::uint16_t> keyCodeOf(std::string_view name) {
    if (const auto* found = std::ranges::find(namedKeys, name, &NamedKey::name);
        found != namedKeys.end())
        return found->keyCode;
    if (const auto* found = std::ranges::find(functionAndDigitKeys, name, &PlacedKey::name);
        found != functionAndDigitKeys.end())
        return found->keyCode;
    return std::nullopt;
}

std::optional<std::string_view> nameOf(std::uint16_t keyCode) {
    if (const auto* found = std::ranges::find(namedKeys, keyCode, &NamedKey::keyCode);
        found != namedKeys.end())
        return found->name;
    if (const auto* found = std::ranges::find(functionAndDigitKeys, keyCode, &PlacedKey::keyCode);
        found != functionAndDigitKeys.end())
        return found->name;
    return std::nullopt;
}

} // namespace fennik::KeyNames
