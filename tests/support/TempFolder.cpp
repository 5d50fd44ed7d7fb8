#include "tests/support/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fennik::test {

namespace {

constexpr uid_t nobody = 65534;

FileUrl made() {
    std::string path = std::filesystem::temp_directory_path() / "fennik-test-XXXXXX";
    if (mkdtemp(path.data()) == nullptr || chmod(path.c_str(), 0755) != 0)
        throw std::runtime_error("no temporary folder");
    return FileUrl(std::filesystem::canonical(path), FileUrl::Form::directory);
}

} // namespace

TempFolder::TempFolder() : url_(made()) {}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(url_.path(), ignored);
}

void TempFolder::file(std::string_view name, std::string_view content) const {
    std::ofstream stream(path(name), std::ios::binary);
    stream << content;
    if (!stream.flush())
        throw std::runtime_error("cannot write " + path(name));
}

void TempFolder::folder(std::string_view name) const {
    std::filesystem::create_directories(path(name));
}

void TempFolder::link(std::string_view name, const std::string& target) const {
    std::filesystem::create_symlink(target, path(name));
}

bool asOrdinaryUser(const std::function<bool()>& check) {
    const auto child = fork();
    if (child == 0) {
        const bool isOrdinary = geteuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0);
        _exit(isOrdinary && check() ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace fennik::test
