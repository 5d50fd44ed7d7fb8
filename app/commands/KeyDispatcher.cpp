#include "app/commands/KeyDispatcher.h"

namespace fennik::app {

bool KeyDispatcher::wants(const KeyCombo& combo) const {
    return !app_.dialog() && store_.actionFor(combo).has_value();
}

bool KeyDispatcher::handle(const KeyCombo& combo, PanelSide side) {
    if (!wants(combo))
        return false;
    app_.activate(side);
    app_.perform(*store_.actionFor(combo));
    return true;
}

} // namespace fennik::app
