#include "core/archives/ArchiveExtractor.h"

#include "core/archives/ArchiveExtraction.h"
#include "core/archives/EntrySelection.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"
#include "core/operations/TransferPlaces.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace fennik {

ArchiveExtractor::ArchiveExtractor(const ArchiveOpener& archives, OperationContext& context,
                                   AskPassword askPassword)
    : archives_(archives), context_(context), askPassword_(std::move(askPassword)) {}

std::vector<PairOutcome> ArchiveExtractor::run(const std::vector<Extraction>& extractions) {
    // What is in an archive that nobody has looked into is added once that is known.
    std::vector<PairCount> counts(extractions.size());
    TransferTotals total;
    for (std::size_t i = 0; i < extractions.size(); ++i) {
        const auto& extraction = extractions[i];
        if (extraction.index)
            counts[i].totals = EntrySelection(extraction.selection).totals(*extraction.index);
        total += counts[i].totals;
    }
    context_.setTotals(total.bytes, total.files);
    OpenFolders folders;
    TransferPlaces targets(folders);
    TransferLedger ledger(context_, extractions.size(), std::move(counts));
    std::vector<PairOutcome> outcomes;
    for (std::size_t i = 0; i < extractions.size(); ++i) {
        if (context_.checkpoint() == Checkpoint::stop)
            break;
        ledger.begin(i);
        ArchiveExtraction extraction({.archives = archives_,
                                      .askPassword = askPassword_,
                                      .ledger = ledger,
                                      .folders = folders,
                                      .targets = targets},
                                     extractions[i]);
        const bool isThrough = extraction.run();
        if (isThrough)
            ledger.end();
        std::ranges::move(extraction.outcomes(), std::back_inserter(outcomes));
        if (!isThrough)
            break;
    }
    return outcomes;
}

} // namespace fennik
