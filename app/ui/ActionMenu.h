#pragma once

#include "app/commands/FennikCommands.h"
#include "app/ui/UiContext.h"

#include <span>

class QMenu;

namespace fennik::ui {

/// Adds an item for each action, with its title and its key, and a line between the sections. The
/// items show the keys but do not listen to them: `KeyMonitor` does, so that a key means the same
/// wherever it is pressed.
void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::MenuSection> sections);

} // namespace fennik::ui
