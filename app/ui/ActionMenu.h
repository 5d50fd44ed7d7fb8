#pragma once

#include "app/commands/FennikCommands.h"
#include "app/ui/UiContext.h"

#include <optional>
#include <span>

class QAction;
class QMenu;

namespace fennik::ui {

/// The text of an item: the title of the action, or what it would do now, and its key.
QString itemText(const UiContext& context, app::KAction action);
/// The action of an item that `addItem` has made; none for other items.
std::optional<app::KAction> actionOf(const QAction& item);

/// Adds an item with the title and the key of an action, which it performs. Items show the keys but
/// do not listen to them: `KeyMonitor` does, so that a key means the same wherever it is pressed.
void addItem(QMenu& menu, const UiContext& context, app::KAction action);
/// The same for a command; the caller connects what the item does.
QAction* addItem(QMenu& menu, const UiContext& context, app::WindowCommand command);
/// Adds an item for each action, and a line between the sections.
void fillMenu(QMenu& menu, const UiContext& context,
              std::span<const app::FennikCommands::ActionSection> sections);

} // namespace fennik::ui
