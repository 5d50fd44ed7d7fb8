#include "core/operations/ItemTransfer.h"
#include "core/operations/UndoJournal.h"

#include <utility>

namespace fennik {

TransferTotals ItemTransfer::count(const std::vector<TransferPair>& pairs) {
    return {10, static_cast<std::int64_t>(pairs.size())};
}

std::vector<PairOutcome> ItemTransfer::run(const std::vector<TransferPair>& pairs) {
    context_.filesDone(static_cast<std::int64_t>(pairs.size()));
    return std::vector<PairOutcome>(pairs.size(), PairOutcome::done);
}

void UndoJournal::record(UndoEntry entry) {
    const std::lock_guard lock(lock_);
    if (!entry.steps.empty())
        entries_.push_back(std::move(entry));
    static_cast<void>(limit_);
}

std::optional<UndoEntry> UndoJournal::last() const {
    const std::lock_guard lock(lock_);
    return entries_.empty() ? std::nullopt : std::optional(entries_.back());
}

} // namespace fennik
