#include "core/platform/OwnProcess.h"
#include "core/platform/posix/ProcessCalls.h"

#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <system_error>
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

bool isAloneInGroup(pid_t leader) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const auto name = entry->path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos ||
            name == std::to_string(leader))
            continue;
        std::string status;
        std::getline(std::ifstream(entry->path() / "stat"), status, '\0');
        // The name in parentheses may itself hold blanks and parentheses.
        std::istringstream fields(status.substr(status.rfind(')') + 1));
        char state = 0;
        pid_t parent = 0;
        pid_t group = 0;
        if (fields >> state >> parent >> group && group == leader && state != 'Z' && state != 'X')
            return false;
    }
    return !error;
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
