#include "core/platform/UnfinishedFile.h"

#include "core/base/Uuid.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/OwnEntry.h"
#include "core/platform/posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

constexpr std::string_view prefix = ".fennik-";

/// Names that are all taken at once, or files that are all removed at once, are no accident.
constexpr int mostTries = 10;

std::unexpected<PosixError> failure(int code) {
    return std::unexpected(PosixError{code});
}

bool isLocked(int descriptor) {
    return retried([descriptor] { return flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
}

/// Where the volume knows no locks, nobody can have the lock, and nothing is ever removed.
bool isLockedOrLockless(int descriptor) {
    return isLocked(descriptor) || errno != EWOULDBLOCK;
}

void removeIfAbandoned(const OpenFolder& folder, const std::string& name) {
    const Descriptor file(retried([&] {
        constexpr int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        return openat(folder.descriptor(), name.c_str(), flags);
    }));
    if (file.number() < 0)
        return;
    const auto status = statusOf(file.number());
    if (!status || status->type != FileType::regular || status->names != 1 ||
        status->owner != geteuid() || !isLocked(file.number()))
        return;
    [[maybe_unused]] const auto removed = removeOwnFile(folder, name, file.number());
}

} // namespace

bool UnfinishedFile::isName(std::string_view name) {
    if (!name.starts_with(prefix))
        return false;
    const auto id = Uuid::parse(name.substr(prefix.size()));
    return id && name.substr(prefix.size()) == id->text();
}

void UnfinishedFile::removeAbandoned(const OpenFolder& folder) {
    const auto entries = folder.entries();
    if (!entries)
        return;
    for (const auto& entry : *entries)
        if (isName(entry.name))
            removeIfAbandoned(folder, entry.name);
}

UnfinishedFile::Result<UnfinishedFile>
UnfinishedFile::create(std::shared_ptr<const OpenFolder> folder) {
    for (int tries = 0; tries < mostTries; ++tries) {
        auto name = std::string(prefix) + Uuid::random().text();
        const int descriptor = retried([&] {
            constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
            return openat(folder->descriptor(), name.c_str(), flags, 0666);
        });
        if (descriptor < 0 && errno != EEXIST)
            return lastError();
        if (descriptor < 0)
            continue;
        UnfinishedFile made(folder, std::move(name), descriptor);
        // Until it is locked, another program may take it for abandoned.
        const bool isSafe = isLockedOrLockless(descriptor);
        const auto isStillOwn = isOwn(*folder, made.name_, descriptor);
        if (isSafe && isStillOwn && *isStillOwn)
            return made;
        [[maybe_unused]] const auto discarded = made.discard();
        if (!isStillOwn)
            return std::unexpected(isStillOwn.error());
    }
    return failure(EEXIST);
}

UnfinishedFile::UnfinishedFile(UnfinishedFile&& other) noexcept
    : folder_(std::move(other.folder_)),
      name_(std::move(other.name_)),
      descriptor_(std::exchange(other.descriptor_, -1)) {}

UnfinishedFile& UnfinishedFile::operator=(UnfinishedFile&& other) noexcept {
    std::swap(folder_, other.folder_);
    std::swap(name_, other.name_);
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

UnfinishedFile::~UnfinishedFile() {
    if (descriptor_ >= 0)
        static_cast<void>(discard());
}

UnfinishedFile::Result<void> UnfinishedFile::write(std::span<const std::byte> bytes) const {
    while (!bytes.empty()) {
        const auto written =
            retried([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
        if (written < 0)
            return lastError();
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

UnfinishedFile::Result<void> UnfinishedFile::sync() const {
    if (retried([this] { return fsync(descriptor_); }) != 0)
        return lastError();
    return {};
}

UnfinishedFile::Result<void> UnfinishedFile::publish(const std::string& name) {
    const auto isStillOwn = isOwn(*folder_, name_, descriptor_);
    if (!isStillOwn)
        return std::unexpected(isStillOwn.error());
    if (!*isStillOwn)
        return failure(ESTALE);
    auto renamed = renameExclusively(*folder_, name_, *folder_, name);
    if (!renamed)
        return renamed;
    // It has its name, whether that is on the disk by now or later.
    [[maybe_unused]] const auto synced = folder_->sync();
    close(std::exchange(descriptor_, -1));
    return {};
}

UnfinishedFile::Result<void> UnfinishedFile::discard() {
    auto removed = removeOwnFile(*folder_, name_, descriptor_);
    if (!removed && removed.error().code == ENOENT)
        removed = {};
    // The lock goes last: until then nobody else cares about the file.
    close(std::exchange(descriptor_, -1));
    return removed;
}

} // namespace fennik
