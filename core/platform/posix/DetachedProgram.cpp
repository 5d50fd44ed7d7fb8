#include "core/platform/DetachedProgram.h"

#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/ProcessEnd.h"
#include "core/platform/posix/Spawning.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::DetachedProgram {

namespace {

bool canBeStarted(const std::string& path) {
    struct stat info{};
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace

std::expected<std::optional<ChildProcess::Ending>, PosixError>
start(const Start& start, std::chrono::milliseconds patience) {
    const Descriptor folder(
        retried([&] { return open(start.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (folder.number() < 0)
        return lastError();
    const auto process = Spawning::spawn({.program = start.program,
                                          .arguments = start.arguments,
                                          .environment = {{"PWD", start.folder}},
                                          .folder = folder.number(),
                                          .leaves = Spawning::Plan::Leaves::terminal});
    if (!process)
        return std::unexpected(process.error());
    auto ending = awaitEnd(*process, patience);
    if (!ending)
        awaitEndElsewhere(*process);
    return ending;
}

std::optional<std::string> find(std::string_view name) {
    if (name.empty())
        return std::nullopt;
    if (name.contains('/')) {
        std::string path(name);
        return canBeStarted(path) ? std::optional(std::move(path)) : std::nullopt;
    }
    const char* variable = std::getenv("PATH"); // NOLINT(concurrency-mt-unsafe)
    std::string_view folders(variable != nullptr ? variable : "/usr/local/bin:/usr/bin:/bin");
    while (!folders.empty()) {
        const auto end = std::min(folders.find(':'), folders.size());
        auto path = std::string(folders.substr(0, end)).append("/").append(name);
        // What is found in a relative folder depends on where this process happens to work.
        if (path.starts_with('/') && canBeStarted(path))
            return path;
        folders.remove_prefix(std::min(end + 1, folders.size()));
    }
    return std::nullopt;
}

} // namespace fennik::DetachedProgram
