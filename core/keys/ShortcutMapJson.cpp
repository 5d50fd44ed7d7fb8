#include "core/base/Utf8.h"
#include "core/keys/ShortcutMap.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace fennik {

namespace {

using Json = nlohmann::json;

constexpr const char* bindingsName = "bindings";
constexpr const char* keyName = "key";
constexpr const char* modifiersName = "modifiers";

std::optional<KeyCombo> comboFrom(const Json& json) {
    if (!json.is_object() || json.size() != 2)
        return std::nullopt;
    const auto key = json.find(keyName);
    const auto modifiers = json.find(modifiersName);
    if (key == json.end() || !key->is_string() || modifiers == json.end() ||
        !modifiers->is_number_unsigned())
        return std::nullopt;
    const auto members = KeyCombo::Modifiers::fromRawValue(modifiers->get<std::uint64_t>());
    if (!members)
        return std::nullopt;
    return KeyCombo{key->get<std::string>(), *members};
}

std::optional<std::vector<KeyCombo>> combosFrom(const Json& json) {
    if (!json.is_array())
        return std::nullopt;
    std::vector<KeyCombo> result;
    for (const auto& element : json) {
        auto combo = comboFrom(element);
        if (!combo)
            return std::nullopt;
        result.push_back(std::move(*combo));
    }
    return result;
}

bool isWritable(const ShortcutMap::Bindings::value_type& binding) {
    return Utf8::isValid(binding.first) &&
           std::ranges::all_of(binding.second, Utf8::isValid, &KeyCombo::key);
}

} // namespace

std::optional<std::string> ShortcutMap::toJson() const {
    if (!std::ranges::all_of(bindings, isWritable))
        return std::nullopt;
    auto actions = Json::object();
    for (const auto& [action, combos] : bindings) {
        auto& list = actions[action] = Json::array();
        for (const auto& [key, modifiers] : combos)
            list.push_back({{keyName, key}, {modifiersName, modifiers.rawValue()}});
    }
    return Json{{bindingsName, std::move(actions)}}.dump();
}

std::optional<ShortcutMap> ShortcutMap::fromJson(std::string_view text) {
    // The parser would take a NUL for the end and never see what follows it.
    if (text.contains('\0'))
        return std::nullopt;
    constexpr bool allowExceptions = false;
    const auto json = Json::parse(text, nullptr, allowExceptions);
    if (!json.is_object() || json.size() != 1)
        return std::nullopt;
    const auto actions = json.find(bindingsName);
    if (actions == json.end() || !actions->is_object())
        return std::nullopt;
    ShortcutMap result;
    for (const auto& [action, list] : actions->items()) {
        auto combos = combosFrom(list);
        if (!combos)
            return std::nullopt;
        result.bindings.emplace(action, std::move(*combos));
    }
    return result;
}

} // namespace fennik
