#include "core/operations/PairTransfer.h"

#include "core/base/CzechText.h"
#include "core/operations/TransferChecks.h"

namespace fennik {

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
    item.to = targets_.complete(*way, ledger_);
    targetFolder_ = item.to;
    if (item.to)
        walk_.run(std::move(item), *status);
}

} // namespace fennik
