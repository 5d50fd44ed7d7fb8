#pragma once

#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TransferCount.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TransferTotals.h"

#include <vector>

namespace fennik {

/// Copies and moves items. Nothing is ever replaced: what is in the way goes to the trash when the
/// user says so. Failures of single items become sentences in the context, and the rest goes on.
/// Works on the calling thread, and waits for the disk and for the user.
class ItemTransfer {
public:
    explicit ItemTransfer(OperationContext& context) : context_(context) {}

    /// Counts what the pairs have in them, without following links. What is going to be renamed
    /// counts as one item. Stops at a checkpoint. What `run` finds to be otherwise later, it tells
    /// the context as new totals.
    TransferTotals count(const TransferPairs& pairs);
    /// One outcome for each pair, in their order. Without a count the context's totals stay what
    /// they are.
    std::vector<PairOutcome> run(const TransferPairs& pairs);

private:
    OperationContext& context_;
    std::vector<PairCount> counts_;
};

} // namespace fennik
