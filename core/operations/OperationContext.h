#pragma once

#include "core/operations/Conflict.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace fennik {

enum class Checkpoint { goOn, stop };

/// Through this the work of a job sees the job, or whatever else it runs for. Used on the thread
/// that works.
class OperationContext {
public:
    virtual ~OperationContext() = default;

    virtual TransferKind kind() const = 0;
    /// The answer to a clash: the one remembered for all, else the user's, for whom it waits.
    virtual ConflictChoice answer(const Conflict& conflict) = 0;
    /// Runs `ask`, which waits for the user in its own way; the work stands still meanwhile. Not
    /// called where the work has been cancelled.
    virtual void whileAsking(const std::function<void()>& ask) = 0;
    /// Waits while paused. Says whether to go on.
    virtual Checkpoint checkpoint() = 0;
    /// The work has been stopped for good.
    virtual bool isCancelled() const = 0;
    virtual void cancelNow() = 0;

    virtual void setTotals(std::int64_t bytes, std::int64_t files) = 0;
    /// The item being worked on; its last component.
    virtual void setCurrentName(std::string_view name) = 0;
    /// Data that was really moved: counts for progress and speed, and waits where there is a cap.
    virtual void bytesWritten(std::int64_t count) = 0;
    /// Progress without data moved: skipped, renamed, cloned or failed items. Never speed.
    virtual void bytesAccounted(std::int64_t count) = 0;
    virtual void filesDone(std::int64_t count) = 0;
    virtual void itemsSkipped(std::int64_t count) = 0;
    /// A whole sentence about one item.
    virtual void addError(std::string sentence) = 0;
    /// A whole sentence about the work as a whole, which has failed with it, whatever was done of
    /// it before.
    virtual void fail(std::string sentence) = 0;
    virtual void addStep(UndoStep step) = 0;
    /// Takes back the last step that was added, whose change has been taken back on the disk.
    virtual void dropLastStep() = 0;
    /// Whether data has to be moved at a limited pace.
    virtual bool isCapped() const = 0;
    virtual const TrashProvider& trash() const = 0;
};

} // namespace fennik
