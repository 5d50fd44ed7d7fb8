#include "app/model/AppModel.h"
#include "core/base/CzechText.h"
#include "core/listing/PathCompleter.h"

namespace fennik::app {

namespace {

/// Actions that this version has, but cannot do yet.
bool isForthcoming(KAction action) {
    switch (action) {
    case KAction::quickLook:
    case KAction::info:
    case KAction::edit:
    case KAction::copy:
    case KAction::move:
    case KAction::rename:
    case KAction::newFolder:
    case KAction::trash:
    case KAction::pack:
    case KAction::unpack:
    case KAction::copyToClipboard:
    case KAction::paste:
    case KAction::moveFromClipboard:
    case KAction::undo:
    case KAction::revealInFinder:
    case KAction::copyPath:
    case KAction::terminal:
    case KAction::commandLine:
    case KAction::operations:
        return true;
    default:
        return false;
    }
}

} // namespace

std::optional<std::string> AppModel::obstacle(KAction action) {
    if (isForthcoming(action))
        return quoted(KActions::shortTitle(action)) + ": to tato verze Fennika ještě neumí.";
    return std::nullopt;
}

void AppModel::perform(KAction action) {
    if (const auto reason = obstacle(action)) {
        showToast(*reason);
        return;
    }
    auto& active = activePanel();
    switch (action) {
    case KAction::switchPanel:
        return activate(otherSide());
    case KAction::open:
        return open();
    case KAction::parent:
        return active.goToParent();
    case KAction::back:
        return active.goBack();
    case KAction::forward:
        return active.goForward();
    case KAction::home:
        return active.navigate(home_);
    case KAction::refresh:
        return active.refresh();
    case KAction::focusPath:
        return requestPathField(activeSide_);
    case KAction::pathFromClipboard:
        return pathFromClipboard();
    case KAction::favorites:
        return requestPlaces();
    case KAction::addFavorite:
        return addFavorite();
    case KAction::toggleHidden:
        return toggleHidden();
    case KAction::swapPanels:
        return left_.swapWith(right_);
    case KAction::otherPanelHere:
        return otherPanel().navigate(active.folder());
    case KAction::quickLook:
    case KAction::info:
    case KAction::edit:
    case KAction::copy:
    case KAction::move:
    case KAction::rename:
    case KAction::newFolder:
    case KAction::trash:
    case KAction::pack:
    case KAction::unpack:
    case KAction::copyToClipboard:
    case KAction::paste:
    case KAction::moveFromClipboard:
    case KAction::undo:
    case KAction::revealInFinder:
    case KAction::copyPath:
        return;
    case KAction::toggleMark:
        return active.toggleMarkAndMoveDown();
    case KAction::markAndSize:
        return active.markAndSize();
    case KAction::markUp:
        return active.markAndMove(-1);
    case KAction::markDown:
        return active.markAndMove(1);
    case KAction::markAll:
        return active.markAll();
    case KAction::unmarkAll:
        active.unmarkAll();
        return;
    case KAction::invertMarks:
        return active.invertMarks();
    case KAction::markMask:
        return setDialog(MaskDialog{Marking::mark});
    case KAction::unmarkMask:
        return setDialog(MaskDialog{Marking::unmark});
    case KAction::sizeAllFolders:
        return sizeAllFolders();
    case KAction::escape:
        return escape();
    case KAction::newTab:
        return active.newTab();
    case KAction::closeTab:
        return active.closeTab(active.activeTab());
    case KAction::nextTab:
        return active.nextTab();
    case KAction::prevTab:
        return active.previousTab();
    case KAction::sortName:
        return active.chooseSort(SortKey::name);
    case KAction::sortExt:
        return active.chooseSort(SortKey::ext);
    case KAction::sortSize:
        return active.chooseSort(SortKey::size);
    case KAction::sortDate:
        return active.chooseSort(SortKey::modified);
    case KAction::terminal:
    case KAction::commandLine:
    case KAction::operations:
        return;
    }
}

void AppModel::open() {
    auto& active = activePanel();
    if (active.openItem())
        return;
    const auto item = active.cursorItem();
    const auto* link = active.linkTarget(std::string(item->name));
    if (link != nullptr && link->isBroken)
        showToast(quoted(item->name) + " nejde otevřít: cíl odkazu neexistuje.",
                  Toast::Kind::error);
    else
        showToast(quoted(item->name) + " je soubor a ty tato verze Fennika ještě neotvírá.");
}

void AppModel::pathFromClipboard() {
    const auto path = PathCompleter::normalise(services_.clipboard.text(), std::nullopt, home_);
    const bool isOneLine = path.find_first_of(std::string_view("\n\r\0", 3)) == std::string::npos;
    if (path.starts_with('/') && isOneLine)
        activePanel().navigate(FileUrl(path).standardized());
    else
        showToast("Ve schránce není cesta.", Toast::Kind::error);
}

void AppModel::toggleHidden() {
    const bool shows = !settings_.get(SettingKeys::showHidden);
    settings_.set(SettingKeys::showHidden, shows);
    left_.takeShowHidden();
    right_.takeShowHidden();
    emit changed(AppChange::settings);
    showToast(shows ? "Skryté soubory zobrazeny" : "Skryté soubory schované");
}

void AppModel::sizeAllFolders() {
    if (activePanel().sizeAllFolders())
        showToast("Počítám velikosti složek… (Esc zastaví)");
}

void AppModel::escape() {
    auto& active = activePanel();
    if (active.escape())
        return;
    if (active.stopSizing())
        showToast("Výpočet velikostí zastaven");
    else
        active.unmarkAll();
}

} // namespace fennik::app
