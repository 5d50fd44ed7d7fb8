#include "core/operations/UndoJournal.h"

#include "core/operations/Undoing.h"

#include <utility>

namespace fennik {

std::string UndoFailure::message() const {
    std::string joined;
    for (const auto& message : messages)
        joined.append(joined.empty() ? "" : "\n").append(message);
    return joined;
}

void UndoJournal::record(UndoEntry entry) {
    if (entry.steps.empty())
        return;
    entry.steps.shrink_to_fit();
    const std::lock_guard lock(lock_);
    entries_.push_back(std::move(entry));
    while (entries_.size() > limit_)
        entries_.pop_front();
}

std::optional<UndoEntry> UndoJournal::last() const {
    const std::lock_guard lock(lock_);
    if (entries_.empty())
        return std::nullopt;
    return entries_.back();
}

std::optional<std::string> UndoJournal::lastTitle() const {
    const std::lock_guard lock(lock_);
    if (entries_.empty())
        return std::nullopt;
    return entries_.back().title;
}

std::expected<std::optional<UndoEntry>, UndoFailure>
UndoJournal::undoLast(const TrashProvider& trash) {
    UndoEntry entry;
    {
        const std::lock_guard lock(lock_);
        if (entries_.empty())
            return std::nullopt;
        entry = std::move(entries_.back());
        entries_.pop_back();
    }
    auto messages = takeBack(entry.steps.all(), trash);
    if (!messages.empty())
        return std::unexpected(UndoFailure{std::move(messages)});
    return entry;
}

} // namespace fennik
