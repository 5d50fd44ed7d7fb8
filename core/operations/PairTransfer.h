#pragma once

#include "core/operations/FolderNode.h"
#include "core/operations/SourceRemoval.h"
#include "core/operations/TransferLedger.h"
#include "core/operations/TransferPlaces.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TransferWalk.h"

#include <string>
#include <vector>

namespace fennik {

/// Takes the pairs of a transfer one by one: examines each, makes the folders that are to hold its
/// destination, and sends it on its way.
class PairTransfer {
public:
    using Clash = TransferWalk::Clash;

    PairTransfer(OpenFolders& folders, TransferLedger& ledger, SourceRemoval& removal, Clash clash)
        : ledger_(ledger),
          clash_(clash),
          sources_(folders),
          targets_(folders),
          walk_(ledger, removal) {}

    /// The current pair of the ledger.
    void run(const TransferPair& pair);
    /// Whether there is more to do: the job has not been stopped. Waits while it is paused.
    bool goesOn() { return walk_.goesOn(); }
    bool isStopped() const { return walk_.isStopped(); }
    /// The folder that holds the destination of the last pair; none where that was not reached.
    const FolderNode::Pointer& targetFolder() const { return targetFolder_; }
    /// The folders that were made to hold destinations, the topmost first.
    const std::vector<FolderNode::Pointer>& madeFolders() const { return targets_.made(); }

private:
    TransferLedger& ledger_;
    Clash clash_;
    TransferPlaces sources_;
    TransferPlaces targets_;
    TransferWalk walk_;
    FolderNode::Pointer targetFolder_;
};

} // namespace fennik
