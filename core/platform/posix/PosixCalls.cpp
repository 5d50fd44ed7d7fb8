#include "core/platform/posix/PosixCalls.h"

#include <fcntl.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace fennik {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

} // namespace

std::unexpected<PosixError> lastError() {
    return std::unexpected(PosixError{errno});
}

int writeAllAt(int descriptor, std::span<const std::byte> bytes, std::int64_t offset) {
    while (!bytes.empty()) {
        const auto written =
            retried([&] { return pwrite(descriptor, bytes.data(), bytes.size(), offset); });
        if (written == 0) // for ever, perhaps
            errno = EIO;
        if (written <= 0)
            return -1;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += written;
    }
    return 0;
}

FileStatus statusFrom(const struct stat& info) {
    return {
        .type = fileTypeOfMode(info.st_mode),
        .size = info.st_size,
        .modified = {info.st_mtim.tv_sec, static_cast<std::uint32_t>(info.st_mtim.tv_nsec)},
        .mode = static_cast<std::uint16_t>(info.st_mode & 07777U),
        .device = info.st_dev,
        .inode = info.st_ino,
        .statusChanged = {info.st_ctim.tv_sec, static_cast<std::uint32_t>(info.st_ctim.tv_nsec)},
        .names = static_cast<std::uint32_t>(info.st_nlink),
        .owner = info.st_uid,
        .isPipe = S_ISFIFO(info.st_mode),
    };
}

FileSystem::Result<FileStatus> statusOf(int descriptor) {
    struct stat info{};
    if (fstat(descriptor, &info) != 0)
        return lastError();
    return statusFrom(info);
}

FileSystem::Result<FileStatus> statusAt(int folder, const std::string& path) {
    struct stat info{};
    if (fstatat(folder, path.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return lastError();
    return statusFrom(info);
}

FileSystem::Result<std::string> linkTargetAt(int folder, const std::string& path) {
    std::string target(256, '\0');
    for (;;) {
        const auto length = readlinkat(folder, path.c_str(), target.data(), target.size());
        if (length < 0)
            return lastError();
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 4);
    }
}

FileType fileTypeOfMode(mode_t mode) {
    if (S_ISREG(mode))
        return FileType::regular;
    if (S_ISDIR(mode))
        return FileType::directory;
    return S_ISLNK(mode) ? FileType::symlink : FileType::other;
}

FileType fileTypeOfEntry(unsigned char entryType) {
    return fileTypeOfMode(static_cast<mode_t>(DTTOIF(entryType)));
}

FileSystem::Result<void> readStream(int descriptor,
                                    const std::function<void(const dirent&)>& consume) {
    const std::unique_ptr<DIR, CloseFolder> folder(fdopendir(descriptor));
    if (!folder) {
        auto error = lastError();
        close(descriptor);
        return error;
    }
    for (;;) {
        errno = 0;
        // Each stream has one reader, for which readdir is safe.
        const auto* entry = readdir(folder.get()); // NOLINT(concurrency-mt-unsafe)
        if (entry == nullptr && errno != 0)
            return lastError();
        if (entry == nullptr)
            return {};
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..")
            consume(*entry);
    }
}

} // namespace fennik
