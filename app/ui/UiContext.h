#pragma once

#include "app/commands/ShortcutStore.h"
#include "app/model/AppModel.h"
#include "app/model/ports/TextEditors.h"
#include "app/ui/Icons.h"
#include "app/ui/KeyCaps.h"
#include "app/ui/Theme.h"

namespace fennik::ui {

/// What all parts of the window draw from. All of it outlives the window.
struct UiContext {
    app::AppModel& app;
    app::ShortcutStore& shortcuts;
    const Theme& theme;
    Icons& icons;
    app::TextEditors* editors = nullptr; ///< to choose from; none: nobody knows any

    KeyCaps keys() const { return KeyCaps(shortcuts); }
};

} // namespace fennik::ui
