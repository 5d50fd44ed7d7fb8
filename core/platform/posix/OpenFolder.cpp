#include "core/platform/OpenFolder.h"

#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/OwnEntry.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/VolumeCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

OpenFolder::Result<void> resultOf(int returned) {
    if (returned != 0)
        return lastError();
    return {};
}

OpenFolder::Result<void> writeAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const auto written = retried(
            [descriptor, content] { return write(descriptor, content.data(), content.size()); });
        if (written < 0)
            return lastError();
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

OpenFolder::Result<void> syncedFile(int descriptor) {
    return resultOf(retried([descriptor] { return fsync(descriptor); }));
}

} // namespace

OpenFolder::Result<OpenFolder> OpenFolder::open(const std::string& path, FollowLinks follow) {
    const int linkFlag = follow == FollowLinks::yes ? 0 : O_NOFOLLOW;
    int descriptor =
        retried([&path, linkFlag] { return ::open(path.c_str(), folderFlags | linkFlag); });
    if (descriptor < 0 && errno == EACCES)
        descriptor = openWithoutListing(AT_FDCWD, path, linkFlag);
    if (descriptor < 0)
        return lastError();
    return OpenFolder(descriptor);
}

OpenFolder::Result<OpenFolder> OpenFolder::openChild(const std::string& name) const {
    int descriptor = retried(
        [this, &name] { return openat(descriptor_, name.c_str(), folderFlags | O_NOFOLLOW); });
    if (descriptor < 0 && errno == EACCES)
        descriptor = openWithoutListing(descriptor_, name, O_NOFOLLOW);
    if (descriptor < 0)
        return lastError();
    return OpenFolder(descriptor);
}

OpenFolder::OpenFolder(OpenFolder&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

OpenFolder& OpenFolder::operator=(OpenFolder&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

OpenFolder::~OpenFolder() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

OpenFolder::Result<FileStatus> OpenFolder::status() const {
    return statusOf(descriptor_);
}

OpenFolder::Result<FileStatus> OpenFolder::status(const std::string& name) const {
    return statusAt(descriptor_, name);
}

OpenFolder::Result<std::vector<OpenFolder::Entry>> OpenFolder::entries() const {
    // Opened anew, because the place where reading goes on belongs to the open file.
    const int stream = retried([this] { return openat(descriptor_, ".", folderFlags); });
    if (stream < 0)
        return lastError();
    std::vector<Entry> found;
    std::vector<std::size_t> untyped;
    const auto read = readStream(stream, [&found, &untyped](const dirent& entry) {
        if (entry.d_type == DT_UNKNOWN)
            untyped.push_back(found.size());
        found.push_back({entry.d_name, fileTypeOfEntry(entry.d_type)});
    });
    if (!read)
        return std::unexpected(read.error());
    for (const auto index : untyped) {
        const auto examined = status(found[index].name);
        if (!examined && examined.error().code != ENOENT)
            return std::unexpected(examined.error());
        found[index].type = examined ? examined->type : FileType::other;
    }
    return found;
}

OpenFolder::Result<std::string> OpenFolder::linkTarget(const std::string& name) const {
    return linkTargetAt(descriptor_, name);
}

OpenFolder::Result<void> OpenFolder::makeFolder(const std::string& name, std::uint16_t mode) const {
    return resultOf(mkdirat(descriptor_, name.c_str(), mode));
}

OpenFolder::Result<void> OpenFolder::makeFile(const std::string& name, std::string_view content,
                                              std::uint16_t mode) const {
    const Descriptor file(retried([this, &name, mode] {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        return openat(descriptor_, name.c_str(), flags, static_cast<mode_t>(mode));
    }));
    if (file.number() < 0)
        return lastError();
    auto made = writeAll(file.number(), content);
    if (made)
        made = syncedFile(file.number());
    // Nothing is lost by closing what is on the disk, so the answer to that does not matter.
    if (!made)
        static_cast<void>(removeOwnFile(*this, name, file.number()));
    return made;
}

OpenFolder::Result<void> OpenFolder::removeFile(const std::string& name) const {
    return resultOf(unlinkat(descriptor_, name.c_str(), 0));
}

OpenFolder::Result<void> OpenFolder::removeFolder(const std::string& name) const {
    return resultOf(unlinkat(descriptor_, name.c_str(), AT_REMOVEDIR));
}

OpenFolder::Result<void> OpenFolder::sync() const {
    auto synced = syncedFile(descriptor_);
    if (synced)
        return synced;
    if (synced.error().code == EBADF)
        return syncNamesWithoutListing(descriptor_);
    // Some file systems know no such call for folders.
    return synced.error().code == EINVAL ? syncVolumeOf(descriptor_) : synced;
}

OpenFolder::Result<void> OpenFolder::syncFile(const std::string& name) const {
    const auto examined = status(name);
    if (!examined)
        return std::unexpected(examined.error());
    if (examined->type != FileType::regular)
        return {};
    const Descriptor file(retried([this, &name] {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        return openat(descriptor_, name.c_str(), flags);
    }));
    if (file.number() >= 0)
        return syncedFile(file.number());
    // Its owner may lack the right to read it, and has a right to know it safe all the same.
    if (errno == EACCES)
        return syncVolume();
    return lastError();
}

OpenFolder::Result<void> OpenFolder::syncVolume() const {
    if (!reachesDiskBySync(descriptor_))
        return std::unexpected(PosixError{ENOTSUP});
    auto synced = syncVolumeOf(descriptor_);
    if (!synced && synced.error().code == EBADF) // opened without the right to list
        return std::unexpected(PosixError{ENOTSUP});
    return synced;
}

} // namespace fennik
