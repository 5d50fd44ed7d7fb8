#pragma once

#include "app/commands/catalogue/KAction.h"
#include "core/keys/ShortcutMap.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

/// The map of shortcuts in force. Every edit is saved at once. Lives on the main thread.
class ShortcutStore final : public QObject {
    Q_OBJECT

public:
    /// The name under which the saved form belongs in the settings.
    static constexpr const char* settingsKey = "shortcuts.v1";

    /// Gives what was saved last, if anything was.
    using Load = std::function<std::optional<std::string>()>;
    /// Takes what is to be saved, and must not wait for a disk.
    using Save = std::function<void(std::string)>;
    enum class Assigned {
        added,
        unchanged, ///< the action has it already, and nobody else does
        owned,     ///< other actions have it, and were not to be replaced
        reserved,  ///< the system has it, and no action may
    };

    /// Takes over what was saved and adds the defaults of actions it does not know; what cannot be
    /// read counts as nothing, and stays as it is until the next edit.
    ShortcutStore(ShortcutMap defaults, const Load& load, Save save);

    const ShortcutMap& map() const { return map_; }
    const ShortcutMap& defaults() const { return defaults_; }
    /// Whether the action has other combinations than by default, or in another order.
    bool isChanged(KAction action) const;
    /// What a press of `combo` does: of several actions the first by identifier.
    std::optional<KAction> actionFor(const KeyCombo& combo) const;
    /// The combination that stands for the action where there is room for one: the first function
    /// key among its combinations, or else the first of them.
    std::optional<KeyCombo> menuCombination(KAction action) const;
    /// The actions with this combination but `except`, ascending by identifier.
    std::vector<KAction> actions(const KeyCombo& combo,
                                 std::optional<KAction> except = std::nullopt) const {
        return KActions::owners(map_, combo, except);
    }

    /// An owner whose identifier names no action gives way without being asked about.
    Assigned assign(const KeyCombo& combo, KAction action, ShortcutMap::Replacing replacing);
    void remove(const KeyCombo& combo, KAction action);
    /// As `ShortcutMap::move`.
    void move(const KeyCombo& combo, KAction action, std::size_t place);
    void reset(KAction action);
    void resetAll();

signals:
    /// Emitted once after each edit.
    void changed();

private:
    void put(ShortcutMap map);

    ShortcutMap defaults_;
    Save save_;
    ShortcutMap map_;
};

} // namespace fennik::app
