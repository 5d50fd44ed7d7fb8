#include "core/platform/posix/VolumeCalls.h"

#include <cerrno>

namespace fennik {

OpenFolder::Result<void> renameWhereSupported(const OpenFolder&, const std::string&,
                                              const OpenFolder&, const std::string&) {
    return std::unexpected(PosixError{ENOSYS});
}

OpenFolder::Result<void> syncVolumeOf(int) {
    return std::unexpected(PosixError{ENOTSUP});
}

bool reachesDiskBySync(int) {
    return false;
}

int openWithoutListing(int, const std::string&, int) {
    errno = EACCES;
    return -1;
}

OpenFolder::Result<void> syncNamesWithoutListing(int) {
    return std::unexpected(PosixError{ENOTSUP});
}

} // namespace fennik
