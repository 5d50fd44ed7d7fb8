#include "tests/support/Processes.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace fennik::test {

bool isAlive(const std::string& process) {
    std::ifstream file("/proc/" + process + "/stat");
    std::string text;
    std::getline(file, text);
    // One that has ended may wait for somebody to ask how.
    const auto nameEnd = text.rfind(") ");
    return nameEnd != std::string::npos && text[nameEnd + 2] != 'Z' && text[nameEnd + 2] != 'X';
}

std::map<int, std::string> descriptorsOf(const std::string& process) {
    namespace fs = std::filesystem;
    std::map<int, std::string> found;
    std::error_code gone; // the descriptor through which the folder is being read
    for (const auto& entry : fs::directory_iterator("/proc/" + process + "/fd"))
        if (auto target = fs::read_symlink(entry.path(), gone); !gone)
            found[std::stoi(entry.path().filename())] = std::move(target);
    return found;
}

} // namespace fennik::test
