#pragma once

#include "app/commands/ShortcutStore.h"
#include "app/model/AppModel.h"
#include "core/keys/KeyCombo.h"

#include <optional>

namespace fennik::app {

/// Turns combinations pressed in a panel into actions. Main thread only.
class KeyDispatcher {
public:
    /// Both outlive the dispatcher.
    KeyDispatcher(AppModel& app, const ShortcutStore& store) : app_(app), store_(store) {}

    /// Performs the action of a combination that was pressed while the table of `side` had the
    /// keyboard. False, and nothing done, for a combination without an action, and while a dialog
    /// is open.
    bool handle(const KeyCombo& combo, PanelSide side);
    /// Whether `handle` would do something.
    bool wants(const KeyCombo& combo) const { return actionFor(combo).has_value(); }

private:
    std::optional<KAction> actionFor(const KeyCombo& combo) const;

    AppModel& app_;
    const ShortcutStore& store_;
};

} // namespace fennik::app
