#pragma once

#include "app/model/CommandOutput.h"
#include "core/base/Executor.h"
#include "core/platform/CommandProcess.h"

#include <chrono>
#include <functional>
#include <memory>

namespace fennik::app {

/// One command at work, read on a thread of its own, which also outlives it: what the command has
/// left running in the background is ended with the runner. Output reaches the main thread twenty
/// times a second at most, and a command that writes faster than it can be shown has to wait.
/// Lives on the main thread.
class CommandRunner {
public:
    /// Called on the main thread, `ended` or `failed` at most once. Output may follow the end.
    struct Listeners {
        std::function<void(CommandOutput)> wrote = {}; ///< see `CommandOutput::append`
        std::function<void(int code)> ended = {};
        std::function<void(CommandProcess::Failure)> failed = {};
    };

    /// Returns at once. `main` outlives the runner.
    CommandRunner(CommandProcess::Start start, Executor& main, Listeners listeners);
    /// Nothing is told any more, and everything ends at once.
    ~CommandRunner();
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

    /// Nothing is told any more.
    void mute();
    /// Asks the command and all that it has started to end, and ends what does not in a moment.
    /// What they write until then is still told.
    void end();
    /// Whether nothing of it is left.
    bool isOver() const;
    /// As `end`, and waits for the end at most until `deadline`; false when it has not come.
    bool endBefore(std::chrono::steady_clock::time_point deadline);

private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
};

} // namespace fennik::app
