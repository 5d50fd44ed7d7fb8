#pragma once

#include "core/base/Executor.h"

namespace fennik::system {

/// Runs tasks on the main thread, in the event loop. Tasks that come after the loop's end are
/// dropped.
class MainThread final : public Executor {
public:
    void execute(Task task) override;
};

} // namespace fennik::system
