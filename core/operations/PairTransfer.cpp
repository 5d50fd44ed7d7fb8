#include "core/operations/PairTransfer.h"

#include "core/base/CzechText.h"
#include "core/operations/TransferChecks.h"

#include <cerrno>

namespace fennik {

namespace {

/// Subject to the umask.
constexpr std::uint16_t usualFolderMode = 0777;

} // namespace

void PairTransfer::run(const TransferPair& pair) {
    const std::string name(pair.source.lastComponent());
    const auto from = sources_.folder(pair.source.parent());
    const auto folder = from ? (*from)->open() : std::unexpected(from.error());
    const auto status = folder ? (*folder)->status(name) : std::unexpected(folder.error());
    if (!status) {
        ledger_.failed(quoted(name) + " nejde přečíst: " + status.error().reason());
        return;
    }
    const auto way = targets_.wayTo(pair.destination.parent());
    if (!way) {
        ledger_.failed(quoted(name) + ": " + way.error().reason());
        return;
    }
    TransferWalk::Item item{.from = *from,
                            .name = name,
                            .type = status->type,
                            .to = {},
                            .newName = std::string(pair.destination.lastComponent()),
                            .clash = clash_};
    const bool isCopy = ledger_.context().kind() == TransferKind::copy;
    switch (TransferChecks::check(pair, **from, *status, *way)) {
    case TransferChecks::Verdict::fine:
        break;
    case TransferChecks::Verdict::samePath:
        item.clash = Clash::number;
        if (isCopy)
            break;
        [[fallthrough]];
    case TransferChecks::Verdict::inside:
        ledger_.failed(quoted(name) + (isCopy ? " nejde kopírovat do sebe sama."
                                              : " nejde přesunout do sebe sama."));
        return;
    }
    item.to = makeFolders(*way);
    targetFolder_ = item.to;
    if (item.to)
        walk_.run(std::move(item), *status);
}

FolderNode::Pointer PairTransfer::makeFolders(const TransferPlaces::Way& way) {
    auto folder = way.folder;
    for (const auto& name : way.missing) {
        const auto held = folder->open();
        const auto made =
            held ? (*held)->makeFolder(name, usualFolderMode) : std::unexpected(held.error());
        const bool isNew = made.has_value();
        const bool isThere = isNew || made.error().code == EEXIST;
        const auto node =
            isThere ? FolderNode::below(folder, name)
                    : FolderNode::Result<FolderNode::Pointer>(std::unexpected(made.error()));
        if (!node) {
            ledger_.failed("Složku " + quoted(name) + " nejde vytvořit: " + node.error().reason());
            return nullptr;
        }
        folder = *node;
        if (isNew) {
            ledger_.context().addStep(UndoSteps::Created{folder->url()});
            madeFolders_.push_back(folder);
        }
    }
    targets_.use(folder);
    return folder;
}

} // namespace fennik
