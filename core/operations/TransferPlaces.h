#pragma once

#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"

#include <string>
#include <vector>

namespace fennik {

/// The folders that the pairs of a request begin from. The one used last stays at hand, as the next
/// pair usually begins from the same.
class TransferPlaces {
public:
    /// As much of the way to a folder as there is.
    struct Way {
        FolderNode::Pointer folder = {};       ///< the last one that is there
        std::vector<std::string> missing = {}; ///< the names below it, the topmost first
    };

    explicit TransferPlaces(OpenFolders& folders) : folders_(folders) {}

    FolderNode::Result<FolderNode::Pointer> folder(const FileUrl& url);
    FolderNode::Result<Way> wayTo(const FileUrl& url);
    /// Makes the folders that are missing, and keeps the last one at hand. None after a failure, of
    /// which the ledger has been told.
    FolderNode::Pointer complete(const Way& way, TransferLedger& ledger);
    /// All that were made so, in their order.
    const std::vector<FolderNode::Pointer>& made() const { return made_; }

private:
    OpenFolders& folders_;
    FolderNode::Pointer last_;
    std::vector<FolderNode::Pointer> made_;
};

} // namespace fennik
