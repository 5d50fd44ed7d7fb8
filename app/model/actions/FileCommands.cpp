#include "app/model/AppModel.h"
#include "app/model/ItemCount.h"
#include "app/model/TransferTarget.h"
#include "core/base/CzechText.h"
#include "core/base/PathText.h"

#include <utility>

namespace fennik::app {

std::vector<FileUrl> AppModel::sources() {
    auto& panel = activePanel();
    std::vector<FileUrl> found;
    for (const auto row : panel.targets())
        found.push_back(panel.items().folder().appending(panel.items().view(row).name));
    return found;
}

MarkTotals AppModel::sourceTotals() {
    auto& panel = activePanel();
    if (!panel.marks().marked().empty())
        return panel.markTotals();
    MarkTotals totals;
    if (const auto item = panel.cursorItem())
        totals.add(*item, panel.folderSizes());
    return totals;
}

void AppModel::openTransfer(TransferKind kind) {
    auto items = sources();
    if (items.empty())
        return showToast(kind == TransferKind::move ? "Není co přesunout." : "Není co kopírovat.");
    if (activePanel().archive())
        return openExtraction();
    if (refusesArchiveAsTarget())
        return;
    const auto totals = sourceTotals();
    setDialog(TransferDialog{.kind = kind,
                             .sources = std::move(items),
                             .target = typeablePath(otherPanel().tab().path),
                             .from = activePanel().folder(),
                             .knownBytes = totals.bytes,
                             .hasUnsizedFolders = totals.hasUnsizedFolders()});
}

void AppModel::enqueue(TransferKind kind, std::vector<TransferPair> pairs) {
    engine_.enqueue({.kind = kind, .pairs = std::move(pairs)});
}

void AppModel::transferInto(PasteDialog items) {
    if (std::ssize(items.sources) > settings_.get(SettingKeys::confirmThreshold))
        setDialog(std::move(items));
    else
        enqueue(items.kind, TransferTarget::pairsInto(items.sources, items.target));
}

void AppModel::receiveDrop(TransferKind kind, std::vector<FileUrl> sources, const FileUrl& folder) {
    if (const auto reason = dropObstacle(sources, folder))
        showToast(*reason, Toast::Kind::error);
    else if (!sources.empty())
        transferInto({kind, std::move(sources), folder, PasteDialog::Origin::drop});
}

std::optional<std::string> AppModel::dropObstacle(const std::vector<FileUrl>& sources,
                                                  const FileUrl& folder) const {
    for (const auto* panel : {&left_, &right_}) {
        const auto& browse = panel->archive();
        if (browse && (folder.path() + "/").starts_with(browse->outermost().place.path() + "/"))
            return std::string(ArchiveTexts::takesNothing);
    }
    for (const auto& source : sources) {
        if (source.isRoot() || (folder.path() + "/").starts_with(source.path() + "/"))
            return quoted(source.lastComponent()) + " nejde vložit do sebe sama.";
    }
    return std::nullopt;
}

void AppModel::paste(TransferKind kind) {
    std::vector<FileUrl> items;
    for (const auto& path : services_.clipboard.files().paths) {
        if (path.starts_with('/') && !path.contains('\0'))
            items.push_back(FileUrl(path).standardized());
    }
    std::erase_if(items, [](const FileUrl& item) { return item.isRoot(); });
    if (items.empty())
        showToast("Ve schránce nejsou soubory.", Toast::Kind::error);
    else
        transferInto(
            {kind, std::move(items), activePanel().folder(), PasteDialog::Origin::clipboard});
}

void AppModel::copyToClipboard() {
    const auto items = sources();
    if (items.empty())
        return showToast("Není co kopírovat.");
    services_.clipboard.setFiles(items);
    showToast("Ve schránce: " + itemsInShort(items), Toast::Kind::ok);
}

void AppModel::copyPath() {
    const auto items = sources();
    if (items.empty())
        return showToast("Není co kopírovat.");
    std::string text;
    for (const auto& item : items)
        text += (text.empty() ? "" : "\n") + storedPath(item.path());
    services_.clipboard.setText(text);
    showToast("Cesta zkopírována", Toast::Kind::ok);
}

} // namespace fennik::app
