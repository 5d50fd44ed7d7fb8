#pragma once

#include "app/commands/catalogue/KAction.h"
#include "core/keys/ShortcutMap.h"

#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace fennik::app {

/// What the menus open for the window itself. No actions: their keys, if any, cannot be changed.
enum class WindowCommand { settings, tips, shortcuts, about };

/// A choice that the menus offer in a menu of its own.
enum class MenuChoice { density, look };

using MenuItem = std::variant<KAction, WindowCommand, MenuChoice>;

/// The menu bar, without widgets.
namespace FennikCommands {

/// Items that stand together, in their order.
using MenuSection = std::vector<MenuItem>;
using ActionSection = std::vector<KAction>;

struct Menu {
    std::string_view title;
    std::vector<MenuSection> sections = {}; ///< a line lies between two of them
};

/// The menus from left to right. The item of an action has its title.
std::vector<Menu> menuBar();

/// The menu of a panel's item.
std::vector<ActionSection> contextMenu();

/// The combination that an action's item shows and obeys: the first one under `map` that makes a
/// `KeyEquivalent`.
std::optional<KeyCombo> menuEquivalent(KAction action, const ShortcutMap& map);

std::string_view title(WindowCommand command);
/// The combination of a command, which it has wherever no action under `map` has it.
std::optional<KeyCombo> fixedCombo(WindowCommand command, const ShortcutMap& map);
/// The command that obeys this combination.
std::optional<WindowCommand> commandOf(const KeyCombo& combo, const ShortcutMap& map);

} // namespace FennikCommands

} // namespace fennik::app
