#include "core/keys/ShortcutMap.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

namespace fennik {

namespace {

bool contains(const std::vector<KeyCombo>& combos, const KeyCombo& combo) {
    return std::ranges::find(combos, combo) != combos.end();
}

} // namespace

std::span<const KeyCombo> ShortcutMap::combos(std::string_view action) const {
    const auto found = bindings.find(action);
    return found == bindings.end() ? std::span<const KeyCombo>() : found->second;
}

std::optional<std::string_view> ShortcutMap::owner(const KeyCombo& combo) const {
    for (const auto& [action, combos] : bindings)
        if (contains(combos, combo))
            return action;
    return std::nullopt;
}

std::vector<std::string> ShortcutMap::owners(const KeyCombo& combo,
                                             std::optional<std::string_view> except) const {
    std::vector<std::string> result;
    for (const auto& [action, combos] : bindings)
        if (action != except && contains(combos, combo))
            result.push_back(action);
    return result;
}

std::vector<ShortcutMap::Collision> ShortcutMap::collisions() const {
    std::vector<Collision> result;
    std::unordered_set<KeyCombo> seen;
    for (const auto& [action, combos] : bindings) {
        for (const auto& combo : combos) {
            if (!seen.insert(combo).second)
                continue;
            if (auto all = owners(combo); all.size() > 1)
                result.push_back({combo, std::move(all)});
        }
    }
    return result;
}

bool ShortcutMap::assign(KeyCombo combo, std::string_view action, Replacing replacing) {
    const auto others = owners(combo, action);
    if (!others.empty() && replacing == Replacing::no)
        return false;
    for (const auto& other : others)
        std::erase(bindings[other], combo);
    auto& combos = bindings[std::string(action)];
    if (!contains(combos, combo))
        combos.push_back(std::move(combo));
    return true;
}

void ShortcutMap::remove(const KeyCombo& combo, std::string_view action) {
    const KeyCombo removed{combo.key, combo.modifiers}; // `combo` may lie in this very list
    if (const auto found = bindings.find(action); found != bindings.end())
        std::erase(found->second, removed);
}

void ShortcutMap::move(const KeyCombo& combo, std::string_view action, std::size_t place) {
    const auto list = bindings.find(action);
    if (list == bindings.end())
        return;
    auto& combos = list->second;
    const auto from = std::ranges::find(combos, combo);
    if (from == combos.end())
        return;
    const auto to = combos.begin() + std::ptrdiff_t(std::min(place, combos.size() - 1));
    if (from < to)
        std::rotate(from, from + 1, to + 1);
    else
        std::rotate(to, from, from + 1);
}

void ShortcutMap::reset(std::string_view action, const ShortcutMap& defaults) {
    std::vector<KeyCombo> free;
    for (const auto& combo : defaults.combos(action))
        if (owners(combo, action).empty())
            free.push_back(combo);
    bindings.insert_or_assign(std::string(action), std::move(free));
}

void ShortcutMap::mergeMissingDefaults(const ShortcutMap& defaults) {
    for (const auto& [action, combos] : defaults.bindings)
        if (!bindings.contains(action))
            reset(action, defaults);
}

} // namespace fennik
