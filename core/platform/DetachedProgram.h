#pragma once

#include "core/base/PosixError.h"
#include "core/platform/ChildProcess.h"

#include <chrono>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Programs of the user's own that go on when this one ends: an editor, a terminal. Waits for the
/// disk; used on workers.
namespace fennik::DetachedProgram {

struct Start {
    std::string program = {};                ///< absolute path
    std::vector<std::string> arguments = {}; ///< without the program itself
    std::string folder = {};                 ///< where it works, absolute bytes
};

/// Starts it in a session of its own, without descriptors or signals of this process and without
/// what told this process alone how it was started. Its input is empty, its output goes nowhere.
/// How it ended, where it has done so within `patience`; nobody else has to wait for it.
std::expected<std::optional<ChildProcess::Ending>, PosixError>
start(const Start& start, std::chrono::milliseconds patience);

/// Where the program of that name is found, which may be a path itself. None: nowhere.
std::optional<std::string> find(std::string_view name);

} // namespace fennik::DetachedProgram
