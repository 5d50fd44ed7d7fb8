#include "app/commands/FennikCommands.h"

#include "app/commands/KeyEquivalent.h"

#include <algorithm>
#include <array>
#include <utility>

namespace fennik::app::FennikCommands {

namespace {

struct Entry {
    WindowCommand command = {};
    std::string_view title;
    std::string_view combo; ///< in the written form, empty for none
};

constexpr std::array entries{
    Entry{WindowCommand::settings, "Nastavení…", "cmd+,"},
    Entry{WindowCommand::tips, "Tipy", ""},
    Entry{WindowCommand::shortcuts, "Klávesové zkratky", "f1"},
    Entry{WindowCommand::about, "O aplikaci Fennik", ""},
};

const Entry& entry(WindowCommand command) {
    return *std::ranges::find(entries, command, &Entry::command);
}

} // namespace

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
             {MenuChoice::density, MenuChoice::look},
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
             {WindowCommand::settings},
         }},
        {"Nápověda",
         {
             {WindowCommand::tips, WindowCommand::shortcuts},
             {WindowCommand::about},
         }},
    };
}

std::vector<ActionSection> contextMenu() {
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

std::string_view title(WindowCommand command) {
    return entry(command).title;
}

std::optional<KeyCombo> fixedCombo(WindowCommand command, const ShortcutMap& map) {
    const auto written = entry(command).combo;
    if (written.empty())
        return std::nullopt;
    auto combo = KeyCombo::parse(written);
    return KActions::owners(map, combo).empty() ? std::optional(std::move(combo)) : std::nullopt;
}

std::optional<WindowCommand> commandOf(const KeyCombo& combo, const ShortcutMap& map) {
    const auto* found = std::ranges::find_if(
        entries, [&](const Entry& entry) { return fixedCombo(entry.command, map) == combo; });
    return found == entries.end() ? std::nullopt : std::optional(found->command);
}

} // namespace fennik::app::FennikCommands
