#include "core/platform/ItemCopy.h"

#include "core/platform/posix/DataCopy.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/ItemMetadata.h"
#include "core/platform/posix/OwnEntry.h"
#include "core/platform/posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fennik {

namespace {

using Copied = std::expected<CopiedItem, CopyFailure>;
using Kind = CopyFailure::Kind;

struct ItemCopy {
    const OpenFolder& from;
    const std::string& name;
    const OpenFolder& to;
    const std::string& newName;
};

std::unexpected<CopyFailure> failure(Kind kind, int code) {
    return std::unexpected(CopyFailure{.kind = kind, .error = {code}});
}

std::unexpected<CopyFailure> failure(PosixError error) {
    return failure(Kind::failed, error.code);
}

/// Why the new name could not be made.
std::unexpected<CopyFailure> lastNamingFailure() {
    return failure(errno == EEXIST ? Kind::exists : Kind::failed, errno);
}

/// What was a regular file a moment ago is opened only to look whether it is one still: a pipe in
/// its place must not make this wait, nor a link lead elsewhere.
int openSource(const ItemCopy& item) {
    return retried([&item] {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        return openat(item.from.descriptor(), item.name.c_str(), flags);
    });
}

std::expected<void, CopyFailure> examineOpened(int source, struct stat& seen) {
    struct stat opened{};
    if (fstat(source, &opened) != 0)
        return lastCopyFailure();
    if (!S_ISREG(opened.st_mode) || opened.st_dev != seen.st_dev || opened.st_ino != seen.st_ino)
        return failure(Kind::failed, ESTALE);
    seen = opened;
    return {};
}

std::expected<FileStatus, CopyFailure> fill(int source, const struct stat& seen, int target,
                                            Cloning cloning, const CopyProgress& progress) {
    if (const auto copied = copyData(source, seen, target, cloning, progress); !copied)
        return std::unexpected(copied.error());
    struct stat made{};
    if (const auto copied = copyMetadata({source}, seen, {target}, made); !copied)
        return failure(copied.error());
    return statusFrom(made);
}

/// An entry that is not held open, and never has content of its own.
OpenFolder::Result<void> removeEntry(const OpenFolder& folder, const std::string& name,
                                     const FileStatus& made) {
    const auto found = folder.status(name);
    if (!found)
        return std::unexpected(found.error());
    const bool isOwn = found->identity() == made.identity() && found->type == made.type;
    return isOwn ? folder.removeFile(name) : OpenFolder::Result<void>{};
}

std::unexpected<CopyFailure> failure(CopyFailure why, const OpenFolder::Result<void>& removed) {
    if (!removed && removed.error().code != ENOENT)
        why.remains = removed.error();
    return std::unexpected(why);
}

/// As `openSource`, with time for whoever holds a lease on the file, who is asked by the system to
/// give it up. ECANCELED: the progress has said to stop meanwhile.
int openPatiently(const ItemCopy& item, const CopyProgress& progress) {
    for (int waits = 0;; ++waits) {
        const int source = openSource(item);
        if (source >= 0 || errno != EAGAIN || waits == mostWaits)
            return source;
        std::this_thread::sleep_for(waitForOthers);
        if (progress(0) == CopyStep::stop) {
            errno = ECANCELED;
            return -1;
        }
    }
}

Copied copyOpened(const ItemCopy& item, int source, const struct stat& seen, Cloning cloning,
                  const CopyProgress& progress) {
    const int target = retried([&item] {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        return openat(item.to.descriptor(), item.newName.c_str(), flags, S_IRUSR | S_IWUSR);
    });
    if (target < 0)
        return lastNamingFailure();
    const auto copy = fill(source, seen, target, cloning, progress);
    if (!copy) {
        const auto removed = removeOwnFile(item.to, item.newName, target);
        close(target);
        return failure(copy.error(), removed);
    }
    // Only now some file systems say that there was no room.
    if (close(target) != 0) {
        const PosixError error{errno};
        return failure({.error = error}, removeEntry(item.to, item.newName, *copy));
    }
    return CopiedItem{.source = statusFrom(seen), .copy = *copy};
}

Copied copyRegular(const ItemCopy& item, struct stat seen, Cloning cloning,
                   const CopyProgress& progress) {
    const Descriptor source(openPatiently(item, progress));
    if (source.number() < 0 && errno == ECANCELED)
        return stopped();
    if (source.number() < 0) // a link or a socket in its place
        return failure(Kind::failed, errno == ELOOP || errno == ENXIO ? ESTALE : errno);
    if (const auto examined = examineOpened(source.number(), seen); !examined)
        return std::unexpected(examined.error());
    return copyOpened(item, source.number(), seen, cloning, progress);
}

/// What the new entry has besides being there.
Copied finish(const ItemCopy& item, const struct stat& seen) {
    auto made = item.to.status(item.newName);
    if (!made) // once more: what it is must be known to remove it after another failure
        made = item.to.status(item.newName);
    if (!made)
        return failure({.error = made.error()}, std::unexpected(made.error()));
    if (made->type != fileTypeOfMode(seen.st_mode)) // somebody has replaced it already
        return failure(Kind::exists, EEXIST);
    struct stat copy{};
    const auto copied = copyMetadata({item.from.descriptor(), item.name.c_str()}, seen,
                                     {item.to.descriptor(), item.newName.c_str()}, copy);
    if (!copied)
        return failure({.error = copied.error()}, removeEntry(item.to, item.newName, *made));
    return CopiedItem{.source = statusFrom(seen), .copy = statusFrom(copy)};
}

Copied copyLink(const ItemCopy& item, const struct stat& seen) {
    const auto target = item.from.linkTarget(item.name);
    if (!target) // no link any more
        return failure(Kind::failed, target.error().code == EINVAL ? ESTALE : target.error().code);
    if (symlinkat(target->c_str(), item.to.descriptor(), item.newName.c_str()) != 0)
        return lastNamingFailure();
    return finish(item, seen);
}

Copied copyPipe(const ItemCopy& item, const struct stat& seen) {
    if (mkfifoat(item.to.descriptor(), item.newName.c_str(), S_IRUSR | S_IWUSR) != 0)
        return lastNamingFailure();
    return finish(item, seen);
}

} // namespace

Copied copyItem(const OpenFolder& from, const std::string& name, FileType listed,
                const OpenFolder& to, const std::string& newName, Cloning cloning,
                const CopyProgress& progress) {
    const ItemCopy item{from, name, to, newName};
    if (progress(0) == CopyStep::stop)
        return stopped();
    struct stat seen{};
    if (listed == FileType::regular) {
        const Descriptor source(openSource(item));
        if (source.number() >= 0 && fstat(source.number(), &seen) == 0 && S_ISREG(seen.st_mode))
            return copyOpened(item, source.number(), seen, cloning, progress);
        // Something else may lie there by now.
    }
    if (fstatat(from.descriptor(), name.c_str(), &seen, AT_SYMLINK_NOFOLLOW) != 0)
        return lastCopyFailure();
    if (S_ISREG(seen.st_mode))
        return copyRegular(item, seen, cloning, progress);
    if (S_ISLNK(seen.st_mode))
        return copyLink(item, seen);
    if (S_ISFIFO(seen.st_mode))
        return copyPipe(item, seen);
    if (S_ISDIR(seen.st_mode))
        return failure(Kind::failed, EISDIR);
    return failure(Kind::notCopyable, EINVAL);
}

OpenFolder::Result<void> copyFolderMetadata(const OpenFolder& from, const OpenFolder& to) {
    struct stat seen{};
    if (fstat(from.descriptor(), &seen) != 0)
        return lastError();
    struct stat made{};
    return copyMetadata({from.descriptor()}, seen, {to.descriptor()}, made);
}

} // namespace fennik
