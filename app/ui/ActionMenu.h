#pragma once

#include "app/commands/FennikCommands.h"
#include "app/ui/UiContext.h"

#include <span>

class QAction;
class QMenu;

namespace fennik::ui {

/// The text of an item: the title of the action, or what it would do now, and its key.
QString itemText(const UiContext& context, app::KAction action);
/// The action of an item that `fillMenu` has made.
app::KAction actionOf(const QAction& item);

/// Adds an item for each action, with its title and its key, and a line between the sections. The
/// items show the keys but do not listen to them: `KeyMonitor` does, so that a key means the same
/// wherever it is pressed.
void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::MenuSection> sections);

} // namespace fennik::ui
