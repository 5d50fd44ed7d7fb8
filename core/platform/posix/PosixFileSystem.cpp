#include "core/platform/posix/PosixFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <sys/statvfs.h>
#include <unistd.h>
#include <vector>

namespace fennik {

namespace {

std::unexpected<PosixError> lastError() {
    return std::unexpected(PosixError{errno});
}

FileStatus statusFrom(const struct stat& info) {
    return {
        .type = fileTypeOfMode(info.st_mode),
        .size = info.st_size,
        .modified = {info.st_mtim.tv_sec, static_cast<std::uint32_t>(info.st_mtim.tv_nsec)},
        .mode = static_cast<std::uint16_t>(info.st_mode & 07777U),
        .device = info.st_dev,
        .inode = info.st_ino,
    };
}

FileType fileTypeOfEntry(const dirent& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return FileType::regular;
    case DT_DIR:
        return FileType::directory;
    case DT_LNK:
        return FileType::symlink;
    default:
        return FileType::other;
    }
}

struct FoundEntry {
    std::string name;
    FolderEntry facts;
};

std::optional<FoundEntry> examine(int folder, const dirent& entry) {
    FoundEntry found{entry.d_name, {.name = {}, .type = fileTypeOfEntry(entry)}};
    struct stat info{};
    if (fstatat(folder, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
        if (!listsUnexamined(errno))
            return std::nullopt;
        return found;
    }
    const auto status = statusFrom(info);
    found.facts.type = status.type;
    found.facts.size = status.type == FileType::directory ? 0 : status.size;
    found.facts.modified = status.modified;
    found.facts.mode = status.mode;
    return found;
}

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

FileType fileTypeOfMode(mode_t mode) {
    if (S_ISREG(mode))
        return FileType::regular;
    if (S_ISDIR(mode))
        return FileType::directory;
    return S_ISLNK(mode) ? FileType::symlink : FileType::other;
}

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
    std::string target(256, '\0');
    for (;;) {
        const auto length = readlink(path.c_str(), target.data(), target.size());
        if (length < 0)
            return lastError();
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 4);
    }
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
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor));
    if (!folder) {
        auto error = lastError();
        close(descriptor);
        return error;
    }
    std::vector<FoundEntry> entries;
    for (;;) {
        errno = 0;
        // Each stream has one reader, for which readdir is safe.
        const auto* entry = readdir(folder.get()); // NOLINT(concurrency-mt-unsafe)
        if (entry == nullptr && errno != 0)
            return lastError();
        if (entry == nullptr)
            break;
        const std::string_view name(entry->d_name);
        if (name == "." || name == "..")
            continue;
        if (auto found = examine(descriptor, *entry))
            entries.push_back(std::move(*found));
    }
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
