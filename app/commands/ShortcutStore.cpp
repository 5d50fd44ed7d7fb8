#include "app/commands/ShortcutStore.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

namespace {

ShortcutMap startingMap(const ShortcutStore::Load& load, const ShortcutMap& defaults) {
    const auto saved = load();
    auto map = saved ? ShortcutMap::fromJson(*saved) : std::nullopt;
    if (!map)
        return defaults;
    map->mergeMissingDefaults(defaults);
    return std::move(*map);
}

} // namespace

ShortcutStore::ShortcutStore(ShortcutMap defaults, const Load& load, Save save)
    : defaults_(std::move(defaults)), save_(std::move(save)), map_(startingMap(load, defaults_)) {}

bool ShortcutStore::isChanged(KAction action) const {
    const auto identifier = KActions::identifier(action);
    return !std::ranges::equal(map_.combos(identifier), defaults_.combos(identifier));
}

std::optional<KAction> ShortcutStore::actionFor(const KeyCombo& combo) const {
    const auto owners = actions(combo);
    return owners.empty() ? std::nullopt : std::optional(owners.front());
}

std::optional<KeyCombo> ShortcutStore::menuCombination(KAction action) const {
    const auto combos = map_.combos(KActions::identifier(action));
    if (combos.empty())
        return std::nullopt;
    const auto functionKey = std::ranges::find_if(combos, &KeyCombo::isFunctionKey);
    return functionKey == combos.end() ? combos.front() : *functionKey;
}

ShortcutStore::Assigned ShortcutStore::assign(const KeyCombo& combo, KAction action,
                                              ShortcutMap::Replacing replacing) {
    if (combo.reservedTitle())
        return Assigned::reserved;
    if (replacing == ShortcutMap::Replacing::no && !actions(combo, action).empty())
        return Assigned::owned;
    auto edited = map_;
    edited.assign(combo, KActions::identifier(action), ShortcutMap::Replacing::yes);
    if (edited == map_)
        return Assigned::unchanged;
    put(std::move(edited));
    return Assigned::added;
}

void ShortcutStore::remove(const KeyCombo& combo, KAction action) {
    auto edited = map_;
    edited.remove(combo, KActions::identifier(action));
    put(std::move(edited));
}

void ShortcutStore::move(const KeyCombo& combo, KAction action, std::size_t place) {
    auto edited = map_;
    edited.move(combo, KActions::identifier(action), place);
    put(std::move(edited));
}

void ShortcutStore::reset(KAction action) {
    auto edited = map_;
    edited.reset(KActions::identifier(action), defaults_);
    put(std::move(edited));
}

void ShortcutStore::resetAll() {
    put(defaults_);
}

void ShortcutStore::put(ShortcutMap map) {
    map_ = std::move(map);
    if (auto text = map_.toJson())
        save_(std::move(*text));
    emit changed();
}

} // namespace fennik::app
