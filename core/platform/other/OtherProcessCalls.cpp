#include "core/platform/OwnProcess.h"
#include "core/platform/posix/ProcessCalls.h"

namespace fennik {

std::string OwnProcess::program() {
    return "/proc/curproc/file";
}

std::chrono::milliseconds OwnProcess::roughTime() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

int closeFrom(posix_spawn_file_actions_t&, int) {
    return 0; // everything that this program opens is closed in what it starts anyway
}

bool isAloneInGroup(pid_t) {
    return false;
}

void widenPipe(int) {}

void refuseNewRights() {}

std::int64_t mappedBytes() {
    return 0;
}

} // namespace fennik
