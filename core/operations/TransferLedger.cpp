#include "core/operations/TransferLedger.h"

#include <utility>

namespace fennik {

TransferLedger::TransferLedger(OperationContext& context, std::size_t pairs,
                               std::vector<PairCount> counts, OnFailure onFailure)
    : context_(context),
      onFailure_(onFailure),
      outcomes_(pairs, PairOutcome::pending),
      counts_(std::move(counts)) {
    for (const auto& count : counts_)
        total_ += count.totals;
}

void TransferLedger::begin(std::size_t pair) {
    pair_ = pair;
    accounted_ = 0;
}

void TransferLedger::end() {
    // What lay below an item that failed or was skipped was counted, and is not to come any more.
    if (isCounted())
        accounted(counts_[pair_].totals.bytes - accounted_);
    if (outcomes_[pair_] == PairOutcome::pending)
        outcomes_[pair_] = PairOutcome::done;
}

PairCount::Extent TransferLedger::extent() const {
    return isCounted() ? counts_[pair_].extent : PairCount::Extent::asOne;
}

void TransferLedger::recount(const TransferTotals& before, const TransferTotals& after) {
    if (!isCounted())
        return;
    const TransferTotals change{.bytes = after.bytes - before.bytes,
                                .files = after.files - before.files};
    counts_[pair_].totals += change;
    total_ += change;
    context_.setTotals(total_.bytes, total_.files);
}

void TransferLedger::written(std::int64_t bytes) {
    accounted_ += bytes;
    context_.bytesWritten(bytes);
}

void TransferLedger::accounted(std::int64_t bytes) {
    if (bytes <= 0)
        return;
    accounted_ += bytes;
    context_.bytesAccounted(bytes);
}

void TransferLedger::skipped(std::int64_t bytes) {
    accounted(bytes);
    context_.itemsSkipped(1);
    if (outcomes_[pair_] == PairOutcome::pending)
        outcomes_[pair_] = PairOutcome::skipped;
}

void TransferLedger::failed(std::size_t pair, std::string sentence) {
    outcomes_[pair] = PairOutcome::failed;
    ++failures_;
    context_.addError(std::move(sentence));
    if (onFailure_ == OnFailure::stop)
        context_.cancelNow();
}

} // namespace fennik
