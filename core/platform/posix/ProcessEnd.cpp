#include "core/platform/posix/ProcessEnd.h"

#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <sys/wait.h>
#include <thread>

namespace fennik {

namespace {

using std::chrono::steady_clock;

ChildProcess::Ending endingOf(int status) {
    if (WIFEXITED(status))
        return {.exitCode = WEXITSTATUS(status)};
    return {.signal = WTERMSIG(status)};
}

} // namespace

std::optional<ChildProcess::Ending> awaitEnd(pid_t process, std::chrono::milliseconds patience) {
    const auto end = steady_clock::now() + patience;
    auto pause = std::chrono::microseconds(100);
    while (true) {
        int status = 0;
        const pid_t ended = retried([&] { return waitpid(process, &status, WNOHANG); });
        if (ended == process)
            return endingOf(status);
        if (ended < 0)
            return ChildProcess::Ending{}; // somebody else has waited for it
        if (steady_clock::now() >= end)
            return std::nullopt;
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, std::chrono::microseconds(10'000));
    }
}

void awaitEndElsewhere(pid_t process) {
    std::thread([process] {
        retried([process] { return waitpid(process, nullptr, 0); });
    }).detach();
}

} // namespace fennik
