#include "tests/support/Processes.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace fennik::test {

namespace {

namespace fs = std::filesystem;

struct Status {
    char state = 'X';
    pid_t parent = 0;
};

Status statusOf(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    std::getline(file, text);
    Status status;
    // The name before may contain anything.
    if (const auto nameEnd = text.rfind(") "); nameEnd != std::string::npos)
        std::istringstream(text.substr(nameEnd + 2)) >> status.state >> status.parent;
    return status;
}

} // namespace

char stateOf(const std::string& process) {
    return statusOf(process).state;
}

bool isAlive(const std::string& process) {
    const char state = stateOf(process);
    return state != 'Z' && state != 'X';
}

bool endsSoon(const std::string& process) {
    constexpr std::chrono::milliseconds pause(1);
    for (int pauses = 5'000; pauses > 0; --pauses) {
        if (!isAlive(process))
            return true;
        std::this_thread::sleep_for(pause);
    }
    return false;
}

std::vector<std::string> childProcesses() {
    std::vector<std::string> children;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        const bool isNumber = name.find_first_not_of("0123456789") == std::string::npos;
        if (isNumber && statusOf(name).parent == getpid() && isAlive(name))
            children.push_back(name);
    }
    return children;
}

std::map<int, std::string> descriptorsOf(const std::string& process) {
    std::map<int, std::string> found;
    std::error_code gone; // the descriptor through which the folder is being read
    for (const auto& entry : fs::directory_iterator("/proc/" + process + "/fd"))
        if (auto target = fs::read_symlink(entry.path(), gone); !gone)
            found[std::stoi(entry.path().filename())] = std::move(target);
    return found;
}

} // namespace fennik::test
