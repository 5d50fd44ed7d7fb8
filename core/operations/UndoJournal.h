#pragma once

#include "core/base/Date.h"
#include "core/base/Uuid.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoStep.h"

#include <cstddef>
#include <deque>
#include <expected>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// What one job or action has done.
struct UndoEntry {
    Uuid id = Uuid::random();
    std::string title = {}; ///< as the user reads it
    UndoStepList steps = {};
    Date date = {}; ///< when they were recorded
};

/// What could not be taken back, a sentence for each step.
struct UndoFailure {
    std::vector<std::string> messages = {};
    /// The sentences, one a line.
    std::string message() const;
};

/// What was done last, so that it can be taken back. Safe on any thread; the lock guards the list
/// alone and is never held while the disk is at work.
class UndoJournal {
public:
    explicit UndoJournal(std::size_t limit = 50) : limit_(limit) {}

    /// Beyond the limit the oldest entries go. An entry without steps is ignored.
    void record(UndoEntry entry);
    /// The newest entry.
    std::optional<UndoEntry> last() const;
    /// The title of the newest entry.
    std::optional<std::string> lastTitle() const;
    /// Takes the newest entry off the list and takes its steps back, the last one first, whether
    /// others fail or not. What was created goes to the trash; nothing is overwritten. None when
    /// there is no entry. An entry that failed is not put back. Waits for the disk.
    std::expected<std::optional<UndoEntry>, UndoFailure> undoLast(const TrashProvider& trash);

private:
    mutable std::mutex lock_;
    std::size_t limit_;
    std::deque<UndoEntry> entries_; ///< oldest first
};

} // namespace fennik
