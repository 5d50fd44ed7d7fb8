#include "app/model/AppModel.h"
#include "app/model/CommandLine.h"
#include "app/model/DesktopActions.h"
#include "app/model/QuickPreview.h"
#include "core/base/CzechText.h"
#include "core/listing/PathCompleter.h"

#include <utility>

namespace fennik::app {

namespace {

/// Why the action cannot do anything where an archive is shown.
std::optional<std::string_view> obstacleInArchive(KAction action) {
    switch (action) {
    case KAction::edit:
    case KAction::move:
    case KAction::rename:
    case KAction::newFolder:
    case KAction::trash:
    case KAction::pack:
    case KAction::paste:
    case KAction::moveFromClipboard:
        return ArchiveTexts::isReadOnly;
    case KAction::copyToClipboard:
        return "Z archivu nejde nic dát do schránky, nejdřív to rozbalte.";
    default:
        return std::nullopt;
    }
}

} // namespace

AppModel::Handler AppModel::handlerOf(KAction action) {
    switch (action) {
    case KAction::switchPanel:
        return [](AppModel& model) { model.activate(model.otherSide()); };
    case KAction::open:
        return [](AppModel& model) { model.open(); };
    case KAction::parent:
        return [](AppModel& model) { model.activePanel().goToParent(); };
    case KAction::back:
        return [](AppModel& model) { model.activePanel().goBack(); };
    case KAction::forward:
        return [](AppModel& model) { model.activePanel().goForward(); };
    case KAction::home:
        return [](AppModel& model) { model.activePanel().navigate(model.home_); };
    case KAction::refresh:
        return [](AppModel& model) { model.activePanel().refresh(); };
    case KAction::focusPath:
        return [](AppModel& model) { model.requestPathField(model.activeSide_); };
    case KAction::pathFromClipboard:
        return [](AppModel& model) { model.pathFromClipboard(); };
    case KAction::favorites:
        return [](AppModel& model) { model.requestPlaces(); };
    case KAction::addFavorite:
        return [](AppModel& model) { model.addFavorite(); };
    case KAction::toggleHidden:
        return [](AppModel& model) { model.toggleHidden(); };
    case KAction::swapPanels:
        return [](AppModel& model) { model.left_.swapWith(model.right_); };
    case KAction::otherPanelHere:
        return [](AppModel& model) { model.otherPanel().navigate(model.activePanel().folder()); };
    case KAction::quickLook:
        return [](AppModel& model) { model.quickLook(); };
    case KAction::info:
        return [](AppModel& model) { model.openInfo(); };
    case KAction::edit:
        return [](AppModel& model) { model.desktop_->edit(); };
    case KAction::copy:
        return [](AppModel& model) { model.openTransfer(TransferKind::copy); };
    case KAction::move:
        return [](AppModel& model) { model.openTransfer(TransferKind::move); };
    case KAction::rename:
        return [](AppModel& model) { model.startRename(); };
    case KAction::newFolder:
        return [](AppModel& model) { model.newFolder(); };
    case KAction::trash:
        return [](AppModel& model) { model.trash(); };
    case KAction::pack:
        return [](AppModel& model) { model.openPacking(); };
    case KAction::unpack:
        return [](AppModel& model) { model.openExtraction(); };
    case KAction::copyToClipboard:
        return [](AppModel& model) { model.copyToClipboard(); };
    case KAction::paste:
        return [](AppModel& model) { model.paste(TransferKind::copy); };
    case KAction::moveFromClipboard:
        return [](AppModel& model) { model.paste(TransferKind::move); };
    case KAction::undo:
        return [](AppModel& model) { model.undo(); };
    case KAction::revealInFinder:
        return [](AppModel& model) { model.desktop_->reveal(model.sources()); };
    case KAction::copyPath:
        return [](AppModel& model) { model.copyPath(); };
    case KAction::toggleMark:
        return [](AppModel& model) { model.activePanel().toggleMarkAndMoveDown(); };
    case KAction::markAndSize:
        return [](AppModel& model) { model.activePanel().markAndSize(); };
    case KAction::markUp:
        return [](AppModel& model) { model.activePanel().markAndMove(-1); };
    case KAction::markDown:
        return [](AppModel& model) { model.activePanel().markAndMove(1); };
    case KAction::markAll:
        return [](AppModel& model) { model.activePanel().markAll(); };
    case KAction::unmarkAll:
        return [](AppModel& model) { model.activePanel().unmarkAll(); };
    case KAction::invertMarks:
        return [](AppModel& model) { model.activePanel().invertMarks(); };
    case KAction::markMask:
        return [](AppModel& model) { model.setDialog(MaskDialog{Marking::mark}); };
    case KAction::unmarkMask:
        return [](AppModel& model) { model.setDialog(MaskDialog{Marking::unmark}); };
    case KAction::sizeAllFolders:
        return [](AppModel& model) { model.sizeAllFolders(); };
    case KAction::escape:
        return [](AppModel& model) { model.escape(); };
    case KAction::newTab:
        return [](AppModel& model) { model.activePanel().newTab(); };
    case KAction::closeTab:
        return
            [](AppModel& model) { model.activePanel().closeTab(model.activePanel().activeTab()); };
    case KAction::nextTab:
        return [](AppModel& model) { model.activePanel().nextTab(); };
    case KAction::prevTab:
        return [](AppModel& model) { model.activePanel().previousTab(); };
    case KAction::sortName:
        return [](AppModel& model) { model.activePanel().chooseSort(SortKey::name); };
    case KAction::sortExt:
        return [](AppModel& model) { model.activePanel().chooseSort(SortKey::ext); };
    case KAction::sortSize:
        return [](AppModel& model) { model.activePanel().chooseSort(SortKey::size); };
    case KAction::sortDate:
        return [](AppModel& model) { model.activePanel().chooseSort(SortKey::modified); };
    case KAction::terminal:
        return [](AppModel& model) { model.desktop_->openTerminal(); };
    case KAction::commandLine:
        return [](AppModel& model) { model.commandLine_->requestFocus(); };
    case KAction::operations:
        return [](AppModel& model) { model.setShowsOperations(!model.showsOperations_); };
    }
    std::unreachable();
}

std::optional<std::string> AppModel::obstacle(KAction action) const {
    if (panel(activeSide_).archive()) {
        if (const auto reason = obstacleInArchive(action))
            return std::string(*reason);
    }
    return std::nullopt;
}

void AppModel::perform(KAction action) {
    if (const auto reason = obstacle(action))
        showToast(*reason);
    else
        handlerOf(action)(*this);
}

void AppModel::open() {
    auto& active = activePanel();
    if (active.openItem())
        return;
    const auto item = active.cursorItem();
    if (!item)
        return;
    const auto* link = active.linkTarget(std::string(item->name));
    if (link != nullptr && link->isBroken)
        showToast(quoted(item->name) + " nejde otevřít: cíl odkazu neexistuje.",
                  Toast::Kind::error);
    else
        desktop_->open(active.location().appending(item->name));
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
    showToast(shows ? "Skryté soubory zobrazeny" : "Skryté soubory schované");
}

void AppModel::sizeAllFolders() {
    if (activePanel().archive())
        showToast("Velikosti složek v archivu jsou spočítané hned.");
    else if (activePanel().sizeAllFolders())
        showToast("Počítám velikosti složek… (Esc zastaví)");
}

void AppModel::escape() {
    auto& active = activePanel();
    if (active.escape())
        return;
    if (active.stopSizing())
        showToast("Výpočet velikostí zastaven");
    else if (!commandLine_->closeOutput() && !quickPreview_->close())
        active.unmarkAll();
}

} // namespace fennik::app
