#include "core/platform/OwnProcess.h"
#include "core/platform/posix/ProcessCalls.h"

#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <sys/prctl.h>
#include <unistd.h>

namespace fennik {

std::string OwnProcess::program() {
    // What the kernel itself holds on to, and not a name that may lead elsewhere by now.
    return "/proc/self/exe";
}

std::chrono::milliseconds OwnProcess::roughTime() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec));
}

int closeFrom(posix_spawn_file_actions_t& actions, int first) {
    return posix_spawn_file_actions_addclosefrom_np(&actions, first);
}

void widenPipe(int descriptor) {
    constexpr int mostForUsers = 1 << 20;
    fcntl(descriptor, F_SETPIPE_SZ, mostForUsers); // a smaller one works as well
}

void refuseNewRights() {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

std::int64_t mappedBytes() {
    std::int64_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * sysconf(_SC_PAGESIZE);
}

} // namespace fennik
