#include "app/commands/catalogue/KAction.h"

#include <algorithm>
#include <utility>

namespace fennik::app::KActions {

namespace {

struct Entry {
    KAction action = {};
    std::string_view identifier;
    std::string_view title;
    std::string_view shortTitle; ///< empty: the title
    std::string_view symbolName;
    Group group = {};
    std::array<std::string_view, 2> combos; ///< in the written form, the second may be empty
};

/// In the order of declaration: what an action is called, then where it stands and its keys.
// clang-format off
constexpr std::array<Entry, count> entries{{
    {KAction::switchPanel, "switchPanel", "Přepnout panel", "",
     "rectangle.split.2x1", Group::tabs, {"tab", "shift+tab"}},
    {KAction::open, "open", "Otevřít", "",
     "arrow.down.right.circle", Group::navigation, {"return", "cmd+down"}},
    {KAction::parent, "parent", "O úroveň výš", "",
     "arrow.turn.left.up", Group::navigation, {"delete", "cmd+up"}},
    {KAction::back, "back", "Zpět", "",
     "chevron.left", Group::navigation, {"cmd+["}},
    {KAction::forward, "forward", "Vpřed", "",
     "chevron.right", Group::navigation, {"cmd+]"}},
    {KAction::home, "home", "Domovská složka", "",
     "house", Group::navigation, {"cmd+shift+h"}},
    {KAction::refresh, "refresh", "Obnovit panel", "Obnovit",
     "arrow.clockwise", Group::navigation, {"ctrl+r"}},
    {KAction::focusPath, "focusPath", "Přejít na cestu…", "",
     "text.cursor", Group::navigation, {"cmd+l", "cmd+shift+g"}},
    {KAction::pathFromClipboard, "pathFromClipboard", "Přejít na cestu ze schránky", "",
     "doc.on.clipboard", Group::navigation, {"cmd+shift+v"}},
    {KAction::favorites, "favorites", "Oblíbené a nedávné složky", "",
     "star", Group::navigation, {"ctrl+d"}},
    {KAction::addFavorite, "addFavorite", "Přidat složku do oblíbených", "",
     "star.circle", Group::navigation, {"ctrl+shift+d"}},
    {KAction::toggleHidden, "toggleHidden", "Zobrazit skryté soubory", "",
     "eye", Group::tabs, {"cmd+shift+."}},
    {KAction::swapPanels, "swapPanels", "Prohodit panely", "",
     "arrow.left.arrow.right", Group::tabs, {"cmd+u"}},
    {KAction::otherPanelHere, "otherPanelHere", "Druhý panel na stejnou složku", "",
     "equal.square", Group::tabs, {"cmd+="}},
    {KAction::quickLook, "quickLook", "Rychlý náhled", "Náhled",
     "eye.circle", Group::files, {"space", "f3"}},
    {KAction::info, "info", "Informace", "",
     "info.circle", Group::files, {"cmd+i"}},
    {KAction::edit, "edit", "Upravit", "",
     "pencil", Group::files, {"f4"}},
    {KAction::copy, "copy", "Kopírovat do druhého panelu", "Kopírovat",
     "doc.on.doc", Group::files, {"f5"}},
    {KAction::move, "move", "Přesunout do druhého panelu", "Přesunout",
     "arrow.right.doc.on.clipboard", Group::files, {"f6"}},
    {KAction::rename, "rename", "Přejmenovat", "",
     "character.cursor.ibeam", Group::files, {"shift+f6"}},
    {KAction::newFolder, "newFolder", "Nová složka", "",
     "folder.badge.plus", Group::files, {"f7", "cmd+shift+n"}},
    {KAction::trash, "trash", "Přesunout do Koše", "Do Koše",
     "trash", Group::files, {"f8", "cmd+delete"}},
    {KAction::pack, "pack", "Zabalit…", "Zabalit",
     "archivebox", Group::files, {"opt+f5"}},
    {KAction::unpack, "unpack", "Rozbalit…", "Rozbalit",
     "shippingbox.and.arrow.backward", Group::files, {"opt+f9"}},
    {KAction::copyToClipboard, "copyToClipboard", "Kopírovat do schránky", "",
     "doc.on.clipboard", Group::files, {"cmd+c"}},
    {KAction::paste, "paste", "Vložit ze schránky (kopírovat)", "",
     "doc.on.clipboard.fill", Group::files, {"cmd+v"}},
    {KAction::moveFromClipboard, "moveFromClipboard", "Vložit ze schránky (přesunout)", "",
     "arrow.right.doc.on.clipboard", Group::files, {"cmd+opt+v"}},
    {KAction::undo, "undo", "Vrátit poslední operaci", "",
     "arrow.uturn.backward", Group::files, {"cmd+z"}},
    {KAction::revealInFinder, "revealInFinder", "Ukázat ve Finderu", "",
     "macwindow", Group::files, {"cmd+shift+r"}},
    {KAction::copyPath, "copyPath", "Kopírovat cestu", "",
     "link", Group::files, {"cmd+opt+c"}},
    {KAction::toggleMark, "toggleMark", "Označit / odznačit a dolů", "",
     "checkmark.circle", Group::selection, {"help"}},
    {KAction::markAndSize, "markAndSize", "Označit a spočítat velikost složky", "",
     "sum", Group::selection, {"opt+space"}},
    {KAction::markUp, "markUp", "Označit a nahoru", "",
     "checkmark.circle", Group::selection, {"shift+up"}},
    {KAction::markDown, "markDown", "Označit a dolů", "",
     "checkmark.circle", Group::selection, {"shift+down"}},
    {KAction::markAll, "markAll", "Označit vše", "",
     "checkmark.circle.fill", Group::selection, {"cmd+a"}},
    {KAction::unmarkAll, "unmarkAll", "Zrušit označení", "",
     "circle.dashed", Group::selection, {"cmd+opt+a"}},
    {KAction::invertMarks, "invertMarks", "Obrátit označení", "",
     "circle.lefthalf.filled", Group::selection, {"ctrl+cmd+i", "nummultiply"}},
    {KAction::markMask, "markMask", "Označit podle masky…", "",
     "plus.circle", Group::selection, {"numplus", "cmd+opt+="}},
    {KAction::unmarkMask, "unmarkMask", "Odznačit podle masky…", "",
     "minus.circle", Group::selection, {"numminus", "cmd+opt+-"}},
    {KAction::sizeAllFolders, "sizeAllFolders", "Spočítat velikost všech složek", "",
     "chart.bar.doc.horizontal", Group::tools, {"shift+opt+space"}},
    {KAction::escape, "escape", "Zastavit výpočet / zrušit označení", "",
     "xmark.circle", Group::selection, {"escape"}},
    {KAction::newTab, "newTab", "Nová záložka", "",
     "plus.square.on.square", Group::tabs, {"cmd+t"}},
    {KAction::closeTab, "closeTab", "Zavřít záložku", "",
     "xmark.square", Group::tabs, {"cmd+w"}},
    {KAction::nextTab, "nextTab", "Další záložka", "",
     "arrow.right.square", Group::tabs, {"ctrl+tab"}},
    {KAction::prevTab, "prevTab", "Předchozí záložka", "",
     "arrow.left.square", Group::tabs, {"ctrl+shift+tab"}},
    {KAction::sortName, "sortName", "Řadit podle názvu", "",
     "textformat", Group::tabs, {"ctrl+opt+cmd+1"}},
    {KAction::sortExt, "sortExt", "Řadit podle přípony", "",
     "doc.text", Group::tabs, {"ctrl+opt+cmd+2"}},
    {KAction::sortSize, "sortSize", "Řadit podle velikosti", "",
     "arrow.up.arrow.down", Group::tabs, {"ctrl+opt+cmd+3"}},
    {KAction::sortDate, "sortDate", "Řadit podle data", "",
     "calendar", Group::tabs, {"ctrl+opt+cmd+4"}},
    {KAction::terminal, "terminal", "Terminál ve složce", "Terminál",
     "terminal", Group::tools, {"f9"}},
    {KAction::commandLine, "commandLine", "Příkazový řádek", "",
     "chevron.right.square", Group::tools, {"cmd+k"}},
    {KAction::operations, "operations", "Fronta operací", "",
     "list.bullet.rectangle", Group::tools, {"cmd+opt+p"}},
}};
// clang-format on

/// An action's number is the place of its entry.
constexpr bool followsDeclaration() {
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (static_cast<std::size_t>(entries[i].action) != i)
            return false;
    return true;
}
static_assert(followsDeclaration());

struct SecondCombo {
    KAction action = {};
    std::string_view combo;
};

constexpr std::array<SecondCombo, 18> secondCombos{{
    {KAction::back, "opt+left"},
    {KAction::forward, "opt+right"},
    {KAction::parent, "opt+up"},
    {KAction::home, "opt+home"},
    {KAction::info, "opt+return"},
    {KAction::rename, "f2"},
    {KAction::trash, "forwarddelete"},
    {KAction::pack, "cmd+shift+f5"},
    {KAction::unpack, "cmd+shift+f9"},
    {KAction::markAndSize, "ctrl+space"},
    {KAction::sizeAllFolders, "ctrl+shift+space"},
    {KAction::invertMarks, "cmd+opt+i"},
    {KAction::nextTab, "cmd+pagedown"},
    {KAction::prevTab, "cmd+pageup"},
    {KAction::sortName, "cmd+opt+1"},
    {KAction::sortExt, "cmd+opt+2"},
    {KAction::sortSize, "cmd+opt+3"},
    {KAction::sortDate, "cmd+opt+4"},
}};

constexpr std::array<KAction, count> allActions = [] {
    std::array<KAction, count> result{};
    std::ranges::transform(entries, result.begin(), &Entry::action);
    return result;
}();

const Entry& entry(KAction action) {
    return entries[static_cast<std::size_t>(action)];
}

} // namespace

const std::array<KAction, count>& all() {
    return allActions;
}

std::string_view identifier(KAction action) {
    return entry(action).identifier;
}

std::optional<KAction> fromIdentifier(std::string_view text) {
    const auto* found = std::ranges::find(entries, text, &Entry::identifier);
    return found == entries.end() ? std::nullopt : std::optional(found->action);
}

std::string_view title(KAction action) {
    return entry(action).title;
}

std::string_view shortTitle(KAction action) {
    const auto& found = entry(action);
    return found.shortTitle.empty() ? found.title : found.shortTitle;
}

std::string_view symbolName(KAction action) {
    return entry(action).symbolName;
}

Group group(KAction action) {
    return entry(action).group;
}

std::string_view title(Group group) {
    switch (group) {
    case Group::navigation:
        return "Navigace";
    case Group::files:
        return "Soubory";
    case Group::selection:
        return "Výběr";
    case Group::tabs:
        return "Panely a záložky";
    case Group::tools:
        break;
    }
    return "Nástroje";
}

std::vector<KeyCombo> defaultCombos(KAction action) {
    std::vector<KeyCombo> result;
    for (const auto written : entry(action).combos)
        if (!written.empty())
            result.push_back(KeyCombo::parse(written));
    return result;
}

std::optional<KeyCombo> secondCombo(KAction action) {
    const auto* found = std::ranges::find(secondCombos, action, &SecondCombo::action);
    if (found == secondCombos.end())
        return std::nullopt;
    return KeyCombo::parse(found->combo);
}

std::vector<KAction> owners(const ShortcutMap& map, const KeyCombo& combo,
                            std::optional<KAction> except) {
    std::vector<KAction> result;
    for (const auto& owner : map.owners(combo))
        if (const auto action = fromIdentifier(owner); action && action != except)
            result.push_back(*action);
    return result;
}

ShortcutMap defaultMap() {
    ShortcutMap result;
    for (const auto action : all())
        result.bindings.emplace(identifier(action), defaultCombos(action));
    return result;
}

ShortcutMap defaultMapOffTheMac() {
    auto result = defaultMap();
    for (const auto action : all())
        if (auto second = secondCombo(action))
            result.assign(std::move(*second), identifier(action), ShortcutMap::Replacing::no);
    return result;
}

} // namespace fennik::app::KActions
