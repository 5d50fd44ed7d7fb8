#include "app/commands/FennikCommands.h"

#include "app/commands/KeyEquivalent.h"

namespace fennik::app::FennikCommands {

std::vector<Menu> menuBar() {
    using enum KAction;
    return {
        {"Soubor",
         {
             {open, quickLook, info, edit},
             {copy, move, rename, newFolder, trash},
             {pack, unpack},
             {revealInFinder, copyPath},
         }},
        {"Úpravy",
         {
             {undo},
             {copyToClipboard, paste, moveFromClipboard},
             {toggleMark, markAndSize, markUp, markDown, markAll, unmarkAll, invertMarks, markMask,
              unmarkMask},
         }},
        {"Zobrazení",
         {
             {toggleHidden},
             {sortName, sortExt, sortSize, sortDate},
             {operations},
         }},
        {"Panel",
         {
             {switchPanel, swapPanels, otherPanelHere},
             {parent, back, forward, home, refresh},
             {focusPath, pathFromClipboard, favorites, addFavorite},
             {newTab, closeTab, nextTab, prevTab},
         }},
        {"Nástroje",
         {
             {commandLine, terminal},
             {markAndSize, sizeAllFolders, escape},
         }},
    };
}

std::vector<MenuSection> contextMenu() {
    using enum KAction;
    return {
        {open, edit, info},
        {copy, move, rename, trash},
        {pack, unpack},
        {copyPath, revealInFinder, terminal},
    };
}

std::optional<KeyCombo> menuEquivalent(KAction action, const ShortcutMap& map) {
    for (const auto& combo : map.combos(KActions::identifier(action)))
        if (KeyEquivalent::of(combo))
            return combo;
    return std::nullopt;
}

} // namespace fennik::app::FennikCommands
