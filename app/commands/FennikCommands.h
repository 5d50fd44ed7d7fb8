#pragma once

#include "app/commands/catalogue/KAction.h"
#include "core/keys/ShortcutMap.h"

#include <optional>
#include <string_view>
#include <vector>

/// The menu bar, without widgets.
namespace fennik::app::FennikCommands {

/// Items that stand together, in their order.
using MenuSection = std::vector<KAction>;

struct Menu {
    std::string_view title;
    std::vector<MenuSection> sections = {}; ///< a line lies between two of them
};

/// The menus from left to right. Each item has the title of its action.
std::vector<Menu> menuBar();

/// The menu of a panel's item.
std::vector<MenuSection> contextMenu();

/// The combination that an action's item shows and obeys: the first one under `map` that makes a
/// `KeyEquivalent`.
std::optional<KeyCombo> menuEquivalent(KAction action, const ShortcutMap& map);

} // namespace fennik::app::FennikCommands
