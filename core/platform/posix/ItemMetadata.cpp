#include "core/platform/posix/ItemMetadata.h"

#include "core/platform/posix/PosixCalls.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

using Result = FileSystem::Result<void>;

template <class Call>
Result attempted(const Call& call) {
    if (retried(call) != 0 && !isBeyondTarget(errno))
        return lastError();
    return {};
}

int examine(const ItemPlace& place, struct stat& info) {
    return place.isOpen() ? fstat(place.descriptor, &info)
                          : fstatat(place.descriptor, place.name, &info, AT_SYMLINK_NOFOLLOW);
}

int changeOwner(const ItemPlace& place, uid_t user, gid_t group) {
    return place.isOpen()
               ? fchown(place.descriptor, user, group)
               : fchownat(place.descriptor, place.name, user, group, AT_SYMLINK_NOFOLLOW);
}

/// `made` says afterwards whose it is. An ordinary user may at least give it to another of his
/// groups.
Result copyOwner(const struct stat& seen, struct stat& made, const ItemPlace& to) {
    const auto give = [&](uid_t user) -> Result {
        if (made.st_uid == user && made.st_gid == seen.st_gid)
            return {};
        if (retried([&] { return changeOwner(to, user, seen.st_gid); }) != 0)
            return lastError();
        made.st_uid = user;
        made.st_gid = seen.st_gid;
        return {};
    };
    auto given = give(seen.st_uid);
    if (!given && isBeyondTarget(given.error().code))
        given = give(made.st_uid);
    if (!given && isBeyondTarget(given.error().code))
        return {};
    return given;
}

/// A program that runs with the rights of its owner must not get another owner's.
mode_t withoutForeignRights(mode_t mode, const struct stat& seen, const struct stat& made) {
    if (made.st_uid != seen.st_uid)
        mode &= ~static_cast<mode_t>(S_ISUID);
    if (made.st_gid != seen.st_gid)
        mode &= ~static_cast<mode_t>(S_ISGID);
    return mode;
}

Result setMode(mode_t mode, const ItemPlace& to) {
    const mode_t rights = mode & 07777U;
    return attempted([&] {
        return to.isOpen() ? fchmod(to.descriptor, rights)
                           : fchmodat(to.descriptor, to.name, rights, AT_SYMLINK_NOFOLLOW);
    });
}

Result copyTimes(const struct stat& seen, const ItemPlace& to) {
    const std::array times{seen.st_atim, seen.st_mtim};
    return attempted([&] {
        return to.isOpen() ? futimens(to.descriptor, times.data())
                           : utimensat(to.descriptor, to.name, times.data(), AT_SYMLINK_NOFOLLOW);
    });
}

} // namespace

bool isBeyondTarget(int errorCode) {
    return errorCode == EPERM || errorCode == EACCES || errorCode == ENOTSUP ||
           errorCode == EOPNOTSUPP || errorCode == EINVAL || errorCode == ENOSYS ||
           errorCode == EOVERFLOW;
}

Result copyMetadata(const ItemPlace& from, const struct stat& seen, const ItemPlace& to,
                    struct stat& made) {
    Result first = copyTimes(seen, to);
    if (examine(to, made) != 0)
        return lastError();
    const auto goOn = [&first](Result next) {
        if (first)
            first = std::move(next);
    };
    goOn(copyOwner(seen, made, to));
    mode_t mode = seen.st_mode;
    goOn(copyAttributes(from, to, mode));
    if (!S_ISLNK(mode))
        goOn(setMode(withoutForeignRights(mode, seen, made), to));
    return first;
}

} // namespace fennik
