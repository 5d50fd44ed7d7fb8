#pragma once

#include "core/keys/KeyCombo.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// Which combinations trigger which action. Actions are known by their identifiers alone, so those
/// of another version of Fennik are kept too. A value.
struct ShortcutMap {
    using Bindings = std::map<std::string, std::vector<KeyCombo>, std::less<>>;
    enum class Replacing { no, yes };

    /// A combination that more than one action has.
    struct Collision {
        KeyCombo combo;
        std::vector<std::string> owners; ///< ascending

        friend bool operator==(const Collision&, const Collision&) = default;
    };

    /// By action. The first combination of a list is the primary one. An action with an empty list
    /// was left without a combination on purpose; one that is absent has not been met yet.
    Bindings bindings = {};

    /// Valid until the map changes.
    std::span<const KeyCombo> combos(std::string_view action) const;
    /// The first action with this combination, by identifier. Valid until the map changes.
    std::optional<std::string_view> owner(const KeyCombo& combo) const;
    /// All actions with this combination but `except`, ascending.
    std::vector<std::string> owners(const KeyCombo& combo,
                                    std::optional<std::string_view> except = std::nullopt) const;
    /// Ordered by the first of their owners.
    std::vector<Collision> collisions() const;

    /// Appends `combo` to the action's list unless it is there, and takes it away from all others
    /// when replacing. Otherwise an owner makes it return false and leave the map as it is.
    bool assign(KeyCombo combo, std::string_view action, Replacing replacing);
    void remove(const KeyCombo& combo, std::string_view action);
    /// Gives one of the action's combinations another place in its list; one behind the end is the
    /// last.
    void move(const KeyCombo& combo, std::string_view action, std::size_t place);
    /// Gives the action its default combinations, without those that another action has now.
    void reset(std::string_view action, const ShortcutMap& defaults);
    /// Takes over the actions that are absent here, without the combinations that are taken.
    void mergeMissingDefaults(const ShortcutMap& defaults);

    /// JSON (RFC 8259): {"bindings": {action: [{"key": text, "modifiers": 0 … 15}, …], …}}. None
    /// where a text is not UTF-8.
    std::optional<std::string> toJson() const;
    /// None for a text of any other form, as a whole.
    static std::optional<ShortcutMap> fromJson(std::string_view text);

    friend bool operator==(const ShortcutMap&, const ShortcutMap&) = default;
};

} // namespace fennik
