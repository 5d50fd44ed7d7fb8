#pragma once

#include "core/base/PosixError.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace fennik {

/// A command of the user's at work, with all that it starts in turn: a process group of its own,
/// without a terminal, with nothing to read, and one pipe for all that it writes. None of this
/// process's descriptors reaches it. Used on one thread, but for what says otherwise.
class CommandProcess {
public:
    struct Start {
        std::string program = {};                ///< absolute path
        std::vector<std::string> arguments = {}; ///< without the program itself
        std::string folder = {};                 ///< that it works in
    };
    struct Failure {
        enum class What {
            folder,  ///< cannot be worked in
            program, ///< cannot be started
        } what = What::program;
        PosixError error = {};
    };

    /// May wait for the disk.
    static std::expected<CommandProcess, Failure> start(const Start& start);
    CommandProcess(CommandProcess&& other) noexcept;
    CommandProcess& operator=(CommandProcess&& other) noexcept;
    /// Ends all of the group at once.
    ~CommandProcess();

    enum class Watched { output, endOnly };
    /// Waits until there is output to be read, where that is watched, or the command ends, or
    /// `wake` is called. Without `patience` for as long as it takes.
    void await(Watched watched, std::optional<std::chrono::milliseconds> patience) const;
    /// What can be read now, without waiting: 0 where there is nothing.
    std::size_t read(std::span<std::byte> bytes);
    /// Whether nobody can write any more. What the command has left running may still do so after
    /// its end.
    bool outputHasEnded() const;
    /// Whether it has ended, and with it all that it has started, as far as the system tells.
    bool isOver() const;
    /// Since it has ended: its exit code, or 128 and the signal that ended it.
    std::optional<int> exitCode() const;

    /// Ends an `await`, also the next one. On any thread, as are the others.
    void wake() const;
    /// Asks all of the group to end.
    void terminate() const;
    /// Ends all of the group at once.
    void kill() const;

private:
    struct State;
    explicit CommandProcess(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace fennik
