#include "core/platform/OwnProcess.h"

#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessCalls.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace fennik::OwnProcess {

namespace {

bool isPipe(int descriptor) {
    struct stat info{};
    return fstat(descriptor, &info) == 0 && S_ISFIFO(info.st_mode);
}

/// Never above what the user, or whoever has started this process, allows.
void setSoftLimit(decltype(RLIMIT_CPU) resource, rlim_t value) {
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max == RLIM_INFINITY ? value : std::min(value, limit.rlim_max);
    setrlimit(resource, &limit);
}

std::chrono::microseconds durationOf(const timeval& time) {
    return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
}

std::chrono::microseconds processorTime() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    return durationOf(used.ru_utime) + durationOf(used.ru_stime);
}

} // namespace

std::string programBeside(std::string_view name) {
    std::error_code error;
    const auto own = std::filesystem::canonical(program(), error);
    return own.parent_path() / name;
}

bool hasPipes() {
    return isPipe(STDIN_FILENO) && isPipe(STDOUT_FILENO);
}

void watchInput(std::function<void()> onEnd) {
    std::thread([onEnd = std::move(onEnd)] {
        // With no event asked for, only the loss of the last writer ends the waiting.
        pollfd input{.fd = STDIN_FILENO, .events = 0, .revents = 0};
        retried([&] { return poll(&input, 1, -1); });
        onEnd();
    }).detach();
}

bool readAll(std::span<std::byte> bytes) {
    while (!bytes.empty()) {
        const auto count = retried([&] { return read(STDIN_FILENO, bytes.data(), bytes.size()); });
        if (count <= 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

bool writeAll(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const auto count =
            retried([&] { return write(STDOUT_FILENO, bytes.data(), bytes.size()); });
        if (count < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

std::size_t shareOfOpenFiles(std::size_t parts, std::size_t least, std::size_t most) {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return least;
    return std::clamp<std::size_t>(limit.rlim_cur / parts, least, most);
}

void renounce() {
    signal(SIGPIPE, SIG_IGN);
    setSoftLimit(RLIMIT_CORE, 0);
    refuseNewRights();
}

void limitMemory(std::int64_t bytes) {
    setSoftLimit(RLIMIT_AS, static_cast<rlim_t>(mappedBytes() + bytes));
}

void limitProcessor(std::chrono::seconds time) {
    const auto used = std::chrono::ceil<std::chrono::seconds>(processorTime());
    setSoftLimit(RLIMIT_CPU, static_cast<rlim_t>((used + time).count()));
}

} // namespace fennik::OwnProcess
