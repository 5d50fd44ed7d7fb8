#pragma once

#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TransferCount.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fennik {

/// The accounts of one transfer: tells the job what was done, and notes what each pair came to.
class TransferLedger {
public:
    enum class OnFailure { goOn, stop };

    /// `counts` is empty where nobody has counted; then the job's totals are left alone.
    TransferLedger(OperationContext& context, std::size_t pairs, std::vector<PairCount> counts,
                   OnFailure onFailure = OnFailure::goOn);

    OperationContext& context() { return context_; }

    void begin(std::size_t pair);
    /// The pair has been gone through to its end, which the job has not stopped before.
    void end();
    std::size_t pair() const { return pair_; }
    bool isCounted() const { return !counts_.empty(); }
    /// How the current pair was counted.
    PairCount::Extent extent() const;
    /// What was counted as `before` turned out to be `after`.
    void recount(const TransferTotals& before, const TransferTotals& after);

    void written(std::int64_t bytes);
    void accounted(std::int64_t bytes);
    void filesDone(std::int64_t count) { context_.filesDone(count); }
    void skipped(std::int64_t bytes);
    /// Of the current pair.
    void failed(std::string sentence) { failed(pair_, std::move(sentence)); }
    void failed(std::size_t pair, std::string sentence);

    const std::vector<PairOutcome>& outcomes() const { return outcomes_; }
    /// How many sentences on failures there were.
    std::size_t failures() const { return failures_; }

private:
    OperationContext& context_;
    OnFailure onFailure_;
    std::vector<PairOutcome> outcomes_;
    std::vector<PairCount> counts_;
    TransferTotals total_;
    std::size_t pair_ = 0;
    std::size_t failures_ = 0;
    std::int64_t accounted_ = 0; ///< bytes of the current pair
};

} // namespace fennik
