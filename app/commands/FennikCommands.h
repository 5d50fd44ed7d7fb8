#pragma once

#include "app/commands/catalogue/KAction.h"
#include "core/keys/ShortcutMap.h"

#include <optional>
#include <string_view>
#include <variant>
#include <vector>

/// The menu bar, without widgets.
namespace fennik::app::FennikCommands {

/// What the menus offer beside the actions: views of the window that change nothing.
enum class WindowCommand { tips, shortcuts, about };

std::string_view title(WindowCommand command);
/// The key that a command has as long as no action owns it; none for most.
std::optional<KeyCombo> fixedKey(WindowCommand command);
/// The command that a press stands for, if no action owns it.
std::optional<WindowCommand> commandFor(const KeyCombo& combo, const ShortcutMap& map);

using MenuItem = std::variant<KAction, WindowCommand>;
/// Items that stand together, in their order.
using MenuSection = std::vector<MenuItem>;

struct Menu {
    std::string_view title;
    std::vector<MenuSection> sections = {}; ///< a line lies between two of them
};

/// The menus from left to right. Each item has the title of its action or command.
std::vector<Menu> menuBar();

/// The menu of a panel's item.
std::vector<std::vector<KAction>> contextMenu();

/// The combination that an action's item shows and obeys: the first one under `map` that makes a
/// `KeyEquivalent`.
std::optional<KeyCombo> menuEquivalent(KAction action, const ShortcutMap& map);

} // namespace fennik::app::FennikCommands
