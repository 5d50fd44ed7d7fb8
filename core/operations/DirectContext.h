#pragma once

#include "core/operations/Conflict.h"
#include "core/operations/OperationContext.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fennik {

/// For work outside the queue, on the thread of the caller. Nobody can pause it. All calls are safe
/// on any thread.
class DirectContext final : public OperationContext {
public:
    /// Told of every count of bytes, on the thread that works and with no lock held.
    using OnBytes = std::function<void(std::int64_t)>;

    /// `trash` outlives this object. Without a resolver the first clash ends the work.
    DirectContext(TransferKind kind, const TrashProvider& trash, ConflictResolver resolver = {},
                  OnBytes onBytes = {});

    TransferKind kind() const override { return kind_; }
    ConflictChoice answer(const Conflict& conflict) override;
    void whileAsking(const std::function<void()>& ask) override { ask(); }
    Checkpoint checkpoint() override;
    bool isCancelled() const override;
    void cancelNow() override;

    void setTotals(std::int64_t bytes, std::int64_t files) override;
    void setCurrentName(std::string_view) override {} // nobody sees it
    void bytesWritten(std::int64_t count) override;
    void bytesAccounted(std::int64_t count) override;
    void filesDone(std::int64_t count) override;
    void itemsSkipped(std::int64_t count) override;
    void addError(std::string sentence) override;
    /// One more error: whoever runs the work knows by its result that it has failed.
    void fail(std::string sentence) override { addError(std::move(sentence)); }
    void addStep(UndoStep step) override;
    void dropLastStep() override;
    bool isCapped() const override { return false; }
    const TrashProvider& trash() const override { return trash_; }

    std::vector<std::string> errors() const;
    /// Hands over what was done so far.
    std::vector<UndoStep> takeSteps();
    std::int64_t doneBytes() const;
    std::int64_t totalBytes() const;
    std::int64_t doneFiles() const;
    std::int64_t totalFiles() const;
    std::int64_t skipped() const;

private:
    const TransferKind kind_;
    const TrashProvider& trash_;
    const ConflictResolver resolver_;
    const OnBytes onBytes_;

    mutable std::mutex lock_; ///< guards what follows
    bool cancelled_ = false;
    std::optional<ConflictDecision> policy_;
    std::vector<std::string> errors_;
    std::vector<UndoStep> steps_;
    std::int64_t doneBytes_ = 0;
    std::int64_t totalBytes_ = 0;
    std::int64_t doneFiles_ = 0;
    std::int64_t totalFiles_ = 0;
    std::int64_t skipped_ = 0;
};

} // namespace fennik
