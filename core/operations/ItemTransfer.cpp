#include "core/operations/ItemTransfer.h"

#include "core/operations/PairTransfer.h"

#include <cstddef>
#include <string>
#include <utility>

namespace fennik {

namespace {

PairCount countPair(const TransferPair& pair, TransferPlaces& sources, TransferPlaces& targets,
                    OperationContext& context) {
    const std::string name(pair.source.lastComponent());
    const auto from = sources.folder(pair.source.parent());
    const auto folder = from ? (*from)->open() : std::unexpected(from.error());
    const auto status = folder ? (*folder)->status(name) : std::unexpected(folder.error());
    // It is going to fail as one item.
    if (!status)
        return {.totals = {.bytes = 0, .files = 1}};
    if (context.kind() == TransferKind::move && status->type == FileType::directory) {
        const auto way = targets.wayTo(pair.destination.parent());
        // Whether that is so the renaming will tell.
        if (way && way->folder->identity().device == (*from)->identity().device)
            return {.totals = {.bytes = 0, .files = 1}, .extent = PairCount::Extent::asOne};
    }
    return {.totals = countTree(*from, name, *status, context)};
}

} // namespace

TransferTotals ItemTransfer::count(const TransferPairs& pairs) {
    OpenFolders folders;
    TransferPlaces sources(folders);
    TransferPlaces targets(folders);
    TransferTotals total;
    counts_.clear();
    counts_.reserve(pairs.size());
    for (std::size_t pair = 0; pair < pairs.size(); ++pair) {
        if (context_.checkpoint() == Checkpoint::stop)
            break;
        counts_.push_back(countPair(pairs[pair], sources, targets, context_));
        total += counts_.back().totals;
    }
    counts_.resize(pairs.size());
    return total;
}

std::vector<PairOutcome> ItemTransfer::run(const TransferPairs& pairs) {
    OpenFolders folders;
    TransferLedger ledger(context_, pairs.size(), std::exchange(counts_, {}));
    SourceRemoval removal(ledger, SourceRemoval::Pace::inBatches);
    PairTransfer transfer(folders, ledger, removal, PairTransfer::Clash::ask);
    for (std::size_t pair = 0; pair < pairs.size() && transfer.goesOn(); ++pair) {
        ledger.begin(pair);
        transfer.run(pairs[pair]);
        if (!transfer.isStopped())
            ledger.end();
    }
    removal.flush();
    return ledger.outcomes();
}

} // namespace fennik
