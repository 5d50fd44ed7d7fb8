#pragma once

#include "core/base/PosixError.h"

#include <chrono>
#include <cstddef>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace fennik {

/// A process that was started, with a pipe into its standard input and one out of its standard
/// output. Its standard error goes nowhere. It has no other descriptors but the one it was given.
/// When this process ends, it meets the end of its input, and with `OwnProcess::watchInput` ends
/// too. Used on one thread at a time, which need not be the same one.
class ChildProcess {
public:
    struct Start {
        std::string program = {};                ///< absolute path
        std::vector<std::string> arguments = {}; ///< without the program itself
        /// Variables that it has besides those of this process, or in their place.
        std::vector<std::pair<std::string, std::string>> environment = {};
        int descriptor = -1; ///< it has this one as its number 3; stays open here; -1: none
    };
    /// How it ended.
    struct Ending {
        std::optional<int> exitCode = {};
        int signal = 0; ///< that ended it, without an exit code
    };
    template <class T>
    using Result = std::expected<T, PosixError>;

    static Result<ChildProcess> start(const Start& start);
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    /// Ends it. Does not wait for one that the system cannot end, stuck in a dead disk.
    ~ChildProcess();

    /// How much of it was written, at least one byte. EPIPE: it reads no more. EAGAIN: it took
    /// nothing for so long. Never raises a signal.
    Result<std::size_t> write(std::span<const std::byte> bytes, std::chrono::milliseconds patience);
    /// It reads the end of its input.
    void closeInput();
    /// At least one byte, or none at the end of its output. EAGAIN: nothing came for so long.
    Result<std::size_t> read(std::span<std::byte> bytes, std::chrono::milliseconds patience);
    /// Ends it at once.
    void kill();
    /// None: it has not ended for so long.
    std::optional<Ending> wait(std::chrono::milliseconds patience);

private:
    struct State;
    explicit ChildProcess(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace fennik
