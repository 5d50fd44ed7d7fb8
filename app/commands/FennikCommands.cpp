#include "app/commands/FennikCommands.h"

#include "app/commands/KeyEquivalent.h"

#include <array>

namespace fennik::app::FennikCommands {

namespace {

constexpr std::array allCommands{WindowCommand::tips, WindowCommand::shortcuts,
                                 WindowCommand::about};

} // namespace

std::string_view title(WindowCommand command) {
    switch (command) {
    case WindowCommand::tips:
        return "Tipy";
    case WindowCommand::shortcuts:
        return "Klávesové zkratky";
    case WindowCommand::about:
        break;
    }
    return "O aplikaci Fennik";
}

std::optional<KeyCombo> fixedKey(WindowCommand command) {
    return command == WindowCommand::shortcuts ? std::optional(KeyCombo::parse("f1"))
                                               : std::nullopt;
}

std::optional<WindowCommand> commandFor(const KeyCombo& combo, const ShortcutMap& map) {
    for (const auto command : allCommands) {
        if (fixedKey(command) == combo && KActions::owners(map, combo).empty())
            return command;
    }
    return std::nullopt;
}

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
        {"Nápověda",
         {
             {WindowCommand::tips, WindowCommand::shortcuts},
             {WindowCommand::about},
         }},
    };
}

std::vector<std::vector<KAction>> contextMenu() {
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
