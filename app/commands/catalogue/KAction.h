#pragma once

#include "core/keys/ShortcutMap.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace fennik::app {

/// Everything that the user can have done by a key, a menu or a button.
enum class KAction {
    switchPanel,
    open,
    parent,
    back,
    forward,
    home,
    refresh,
    focusPath,
    pathFromClipboard,
    favorites,
    addFavorite,
    toggleHidden,
    swapPanels,
    otherPanelHere,
    quickLook,
    info,
    edit,
    copy,
    move,
    rename,
    newFolder,
    trash,
    pack,
    unpack,
    copyToClipboard,
    paste,
    moveFromClipboard,
    undo,
    revealInFinder,
    copyPath,
    toggleMark,
    markAndSize,
    markUp,
    markDown,
    markAll,
    unmarkAll,
    invertMarks,
    markMask,
    unmarkMask,
    sizeAllFolders,
    escape,
    newTab,
    closeTab,
    nextTab,
    prevTab,
    sortName,
    sortExt,
    sortSize,
    sortDate,
    terminal,
    commandLine,
    operations,
};

/// What is known of each action beforehand. Titles are Czech. Safe on any thread.
namespace KActions {

inline constexpr std::size_t count = 52;

/// What an action belongs to, in the order in which the editor of shortcuts shows them.
enum class Group { navigation, files, selection, tabs, tools };

inline constexpr std::array allGroups{Group::navigation, Group::files, Group::selection,
                                      Group::tabs, Group::tools};

/// In the order of declaration.
const std::array<KAction, count>& all();

/// The text that stands for the action in saved state.
std::string_view identifier(KAction action);
std::optional<KAction> fromIdentifier(std::string_view text);

std::string_view title(KAction action);
/// The title where there is little room.
std::string_view shortTitle(KAction action);
/// The name of the action's icon. Some actions share one.
std::string_view symbolName(KAction action);
Group group(KAction action);
std::string_view title(Group group);

/// The first one is the primary combination.
std::vector<KeyCombo> defaultCombos(KAction action);
/// One more combination for keyboards other than a Mac's, where desktops take some of the defaults
/// for themselves and hands know other habits; none for most actions.
std::optional<KeyCombo> secondCombo(KAction action);

/// The actions with this combination but `except`, ascending by identifier. Identifiers in `map`
/// that name no action are passed over.
std::vector<KAction> owners(const ShortcutMap& map, const KeyCombo& combo,
                            std::optional<KAction> except = std::nullopt);

/// The defaults on a Mac.
ShortcutMap defaultMap();
/// The defaults elsewhere: the same, each followed by its second combination where nobody has that.
ShortcutMap defaultMapOffTheMac();

} // namespace KActions

} // namespace fennik::app
