#include "core/platform/posix/PosixFileSystem.h"

#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace fennik {

namespace {

struct FoundEntry {
    std::string name;
    FolderEntry facts;
};

std::optional<FoundEntry> examine(int folder, const dirent& entry) {
    FoundEntry found{entry.d_name, {.name = {}, .type = fileTypeOfEntry(entry.d_type)}};
    const auto status = statusAt(folder, entry.d_name);
    if (!status) {
        if (!listsUnexamined(status.error().code))
            return std::nullopt;
        return found;
    }
    found.facts.type = status->type;
    found.facts.size = status->type == FileType::directory ? 0 : status->size;
    found.facts.modified = status->modified;
    found.facts.mode = status->mode;
    return found;
}

} // namespace

bool listsUnexamined(int errorCode) {
    return errorCode == EACCES || errorCode == EPERM;
}

FileSystem::Result<FileStatus> PosixFileSystem::status(const std::string& path,
                                                       FollowLinks follow) const {
    struct stat info{};
    const int result =
        follow == FollowLinks::yes ? stat(path.c_str(), &info) : lstat(path.c_str(), &info);
    if (result != 0)
        return lastError();
    return statusFrom(info);
}

FileSystem::Result<std::string> PosixFileSystem::linkTarget(const std::string& path) const {
    return linkTargetAt(AT_FDCWD, path);
}

FileSystem::Result<std::int64_t> PosixFileSystem::freeSpace(const std::string& path) const {
    struct statvfs info{};
    if (statvfs(path.c_str(), &info) != 0)
        return lastError();
    if (info.f_blocks == 0) // such as /proc, which has no room for anything
        return std::unexpected(PosixError{ENOTSUP});
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::uint64_t blockSize = std::max<std::uint64_t>(info.f_frsize, 1);
    const auto blocks = std::min<std::uint64_t>(info.f_bavail, most / blockSize);
    return static_cast<std::int64_t>(blocks * blockSize);
}

FileSystem::Result<void> PosixFileSystem::checkWritable(const std::string& folder) const {
    if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0)
        return lastError();
    return {};
}

FileSystem::Result<void> PosixFileSystem::readFolder(const std::string&,
                                                     const FolderEntryConsumer&) const {
    return std::unexpected(PosixError{ENOTSUP});
}

FileSystem::Result<void>
PosixFileSystem::enumerateFolder(const std::string& path,
                                 const FolderEntryConsumer& consume) const {
    const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return lastError();
    std::vector<FoundEntry> entries;
    const auto read = readStream(descriptor, [&entries, descriptor](const dirent& entry) {
        if (auto found = examine(descriptor, entry))
            entries.push_back(std::move(*found));
    });
    if (!read)
        return read;
    for (auto& [name, facts] : entries) {
        facts.name = name;
        consume(facts);
    }
    return {};
}

FileSystem::Result<void> PosixFileSystem::readSizes(const std::string&, FollowLinks,
                                                    const SizeConsumer&) const {
    return std::unexpected(PosixError{ENOTSUP});
}

} // namespace fennik
