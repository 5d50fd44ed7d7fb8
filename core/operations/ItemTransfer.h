#pragma once

#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TransferRequest.h"

#include <cstdint>
#include <vector>

namespace fennik {

/// What a transfer has before it.
struct TransferTotals {
    std::int64_t bytes = 0; ///< of data
    std::int64_t files = 0; ///< everything but folders
};

/// Copies and moves items. Nothing is ever replaced: what is in the way goes to the trash when the
/// user says so. Failures of single items become sentences in the context, and the rest goes on.
/// Works on the calling thread, and waits for the disk and for the user.
class ItemTransfer {
public:
    explicit ItemTransfer(OperationContext& context) : context_(context) {}

    /// Counts what the pairs have in them, without following links. Stops at a checkpoint.
    TransferTotals count(const std::vector<TransferPair>& pairs);
    /// One outcome for each pair, in their order.
    std::vector<PairOutcome> run(const std::vector<TransferPair>& pairs);

private:
    OperationContext& context_;
};

} // namespace fennik
