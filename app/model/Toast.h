#pragma once

#include "core/base/Uuid.h"

#include <optional>
#include <string>

namespace fennik::app {

/// A message that goes away by itself.
struct Toast {
    enum class Kind { ok, error, info };
    /// What a button on the toast offers.
    enum class Action {
        fullDiskAccess,
        operations, ///< to show the card of the queue
    };

    Uuid id = Uuid::random(); ///< a toast in the place of another with the same text is a new one
    std::string text = {};    ///< may have several lines
    Kind kind = Kind::info;
    bool undoable = false; ///< offers to undo
    std::optional<Action> action = {};
};

} // namespace fennik::app
