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
/// output. Its standard error goes nowhere. It has no other descriptors but the one it was given,
/// and ends when this process does.
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
    /// Ends it.
    ~ChildProcess();

    /// All of it, or a failure: EPIPE when it reads no more. Never raises a signal.
    Result<void> write(std::span<const std::byte> bytes);
    /// It reads the end of its input.
    void closeInput();
    /// At least one byte, or none at the end of its output. EAGAIN: nothing came for so long.
    Result<std::size_t> read(std::span<std::byte> bytes, std::chrono::milliseconds patience);
    /// Ends it at once.
    void kill();
    /// Waits for its end.
    Ending wait();

private:
    struct State;
    explicit ChildProcess(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace fennik
