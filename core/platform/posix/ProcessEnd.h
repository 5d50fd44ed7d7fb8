#pragma once

#include "core/platform/ChildProcess.h"

#include <chrono>
#include <optional>
#include <sys/types.h>

namespace fennik {

/// How the child process has ended; none: it has not for so long. Until then its number belongs to
/// nobody else.
std::optional<ChildProcess::Ending> awaitEnd(pid_t process, std::chrono::milliseconds patience);

/// Takes note of its end, whenever that comes, on a thread of its own.
void awaitEndElsewhere(pid_t process);

} // namespace fennik
