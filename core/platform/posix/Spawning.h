#pragma once

#include "core/base/PosixError.h"
#include "core/platform/posix/Descriptor.h"

#include <chrono>
#include <expected>
#include <memory>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

/// How this process starts others.
namespace fennik::Spawning {

template <class T>
using Result = std::expected<T, PosixError>;

/// The two ends of a pipe. No process that is started meanwhile inherits them.
struct Pipe {
    std::unique_ptr<const Descriptor> reading = {};
    std::unique_ptr<const Descriptor> writing = {};
};
Result<Pipe> makePipe();

/// Without the limits of this process's own making: signals are neither ignored nor held back.
struct Plan {
    std::string program = {};                ///< absolute path
    std::vector<std::string> arguments = {}; ///< without the program itself
    /// Variables that it has besides those of this process, or in their place.
    std::vector<std::pair<std::string, std::string>> environment = {};
    // Descriptors of this process; −1 for the first three: the null device. It has no others.
    int input = -1;
    int output = -1;
    int error = -1;
    int given = -1;  ///< it has this one as its number 3; −1: none
    int folder = -1; ///< that it works in; −1: where this process does
    /// What of this process it leaves: the process group with the keys of the terminal, or the
    /// terminal altogether. It leads what it is in then.
    enum class Leaves { group, terminal } leaves = Leaves::group;
};
Result<pid_t> spawn(const Plan& plan);

/// Whether the descriptor is ready, or its other end gone, before the patience ends; EAGAIN.
Result<void> waitUntilReady(int descriptor, short events, std::chrono::milliseconds patience);

} // namespace fennik::Spawning
