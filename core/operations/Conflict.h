#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"

#include <cstdint>
#include <functional>

namespace fennik {

/// A name that is taken where an item is to go.
struct Conflict {
    FileUrl source = {};
    FileUrl destination = {};    ///< the item that is there
    std::int64_t sourceSize = 0; ///< bytes
    Date sourceDate = {};        ///< of the last change of the content
    std::int64_t destinationSize = 0;
    Date destinationDate = {};
    bool typeMismatch = false; ///< exactly one of the two is a folder
    friend bool operator==(const Conflict&, const Conflict&) = default;
};

enum class ConflictChoice {
    overwrite,      ///< the item that is there goes to the trash
    overwriteOlder, ///< the same where it is older than the source, else `skip`
    skip,
    rename, ///< the source gets a free name
    cancel, ///< ends the whole job; nothing happens to this item
};

struct ConflictDecision {
    ConflictChoice choice = ConflictChoice::cancel;
    bool applyToAll = false; ///< holds for every later clash of the same job
    friend bool operator==(const ConflictDecision&, const ConflictDecision&) = default;
};

/// Asks the user. Called on the worker with no lock held, and may wait for as long as it takes.
using ConflictResolver = std::function<ConflictDecision(const Conflict&)>;

} // namespace fennik
