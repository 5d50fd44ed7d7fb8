#pragma once

#include "core/operations/FolderNode.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TransferTotals.h"

#include <cstdint>
#include <string>

namespace fennik {

/// What one pair of a request adds to the totals.
struct PairCount {
    enum class Extent {
        asOne,  ///< a folder and all in it is one item without bytes: it is going to be renamed
        inFull, ///< everything in it was counted
    };
    TransferTotals totals = {};
    Extent extent = Extent::inFull;
};

/// What an item that is no folder adds to the bytes: links and pipes have none.
std::int64_t bytesOf(const FileStatus& status);

/// Counts the files in a tree, of which `name` is the top, without following links. What cannot be
/// read adds nothing. Ends early when the checkpoint says so.
TransferTotals countTree(const FolderNode::Pointer& folder, const std::string& name,
                         const FileStatus& status, OperationContext& context);

} // namespace fennik
