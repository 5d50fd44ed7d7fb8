#include "app/model/SavedState.h"

#include "core/base/PathText.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

namespace fennik::app {

namespace {

using Json = nlohmann::json;

std::string_view rawValue(PanelSide side) {
    return side == PanelSide::left ? "left" : "right";
}

Json jsonOf(const PanelTab& tab) {
    Json json = {
        {"id", tab.id.text()},
        {"path", storedPath(tab.path)},
        {"sort", {{"key", fennik::rawValue(tab.sort.key)}, {"ascending", tab.sort.ascending}}}};
    if (tab.cursorName)
        json["cursorName"] = storedName(*tab.cursorName);
    return json;
}

Json jsonOf(const SavedPanel& panel) {
    auto tabs = Json::array();
    for (const auto& tab : panel.tabs)
        tabs.push_back(jsonOf(tab));
    return {{"tabs", std::move(tabs)}, {"active", panel.active}};
}

/// The value under `key` when `object` is an object and the value is a T; else none. The pointer is
/// good as long as `object`.
template <class T>
const T* find(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : found->get_ptr<const T*>();
}

PanelSort sortOf(const Json& json) {
    PanelSort sort;
    if (const auto* key = find<std::string>(json, "key"))
        sort.key = sortKeyFromRawValue(*key).value_or(sort.key);
    if (const auto* ascending = find<bool>(json, "ascending"))
        sort.ascending = *ascending;
    return sort;
}

std::optional<PanelTab> tabOf(const Json& json, std::set<Uuid>& taken) {
    const auto* pathText = find<std::string>(json, "path");
    auto path = pathText != nullptr ? pathFromStored(*pathText) : std::nullopt;
    if (!path)
        return std::nullopt;
    PanelTab tab;
    tab.path = std::move(*path);
    if (const auto* text = find<std::string>(json, "id"))
        tab.id = Uuid::parse(*text).value_or(tab.id);
    if (!taken.insert(tab.id).second) {
        tab.id = Uuid::random();
        taken.insert(tab.id);
    }
    if (const auto sort = json.find("sort"); sort != json.end())
        tab.sort = sortOf(*sort);
    if (const auto* name = find<std::string>(json, "cursorName"))
        tab.cursorName = nameFromStored(*name);
    return tab;
}

/// Indexes that no list has are the nearest that a list could have.
std::size_t indexOf(const Json& json) {
    if (const auto* number = json.get_ptr<const Json::number_unsigned_t*>())
        return *number;
    return 0;
}

SavedPanel panelOf(const Json& json, std::set<Uuid>& taken) {
    SavedPanel panel;
    const auto savedActive = json.contains("active") ? indexOf(json["active"]) : 0;
    const auto* tabs = find<Json::array_t>(json, "tabs");
    if (tabs == nullptr)
        return panel;
    for (std::size_t index = 0; index < tabs->size(); ++index) {
        if (index == savedActive)
            panel.active = panel.tabs.size();
        if (auto tab = tabOf((*tabs)[index], taken))
            panel.tabs.push_back(std::move(*tab));
    }
    if (savedActive >= tabs->size())
        panel.active = panel.tabs.size();
    panel.active = std::min(panel.active, panel.tabs.empty() ? 0 : panel.tabs.size() - 1);
    return panel;
}

} // namespace

std::string SavedState::toJson() const {
    return Json{
        {"left", jsonOf(left)}, {"right", jsonOf(right)}, {"activeSide", rawValue(activeSide)}}
        .dump();
}

std::optional<SavedState> SavedState::fromJson(std::string_view text) {
    const auto json = Json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!json.is_object())
        return std::nullopt;
    SavedState state;
    std::set<Uuid> taken;
    if (const auto left = json.find("left"); left != json.end())
        state.left = panelOf(*left, taken);
    if (const auto right = json.find("right"); right != json.end())
        state.right = panelOf(*right, taken);
    if (const auto* side = find<std::string>(json, "activeSide");
        side != nullptr && *side == rawValue(PanelSide::right))
        state.activeSide = PanelSide::right;
    return state;
}

} // namespace fennik::app
