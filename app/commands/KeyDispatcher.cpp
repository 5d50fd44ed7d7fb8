#include "app/commands/KeyDispatcher.h"

namespace fennik::app {

bool KeyDispatcher::handle(const KeyCombo& combo, PanelSide side) {
    const auto action = actionFor(combo);
    if (!action)
        return false;
    app_.activate(side);
    app_.perform(*action);
    return true;
}

std::optional<KAction> KeyDispatcher::actionFor(const KeyCombo& combo) const {
    return app_.dialog() ? std::nullopt : store_.actionFor(combo);
}

} // namespace fennik::app
