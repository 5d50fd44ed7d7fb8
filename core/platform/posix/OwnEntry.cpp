#include "core/platform/posix/OwnEntry.h"

#include "core/platform/posix/PosixCalls.h"

#include <cerrno>

namespace fennik {

OpenFolder::Result<bool> isOwn(const OpenFolder& folder, const std::string& name, int descriptor) {
    const auto own = statusOf(descriptor);
    if (!own)
        return std::unexpected(own.error());
    const auto found = folder.status(name);
    if (!found && found.error().code != ENOENT)
        return std::unexpected(found.error());
    return found && found->identity() == own->identity();
}

OpenFolder::Result<void> removeOwnFile(const OpenFolder& folder, const std::string& name,
                                       int descriptor) {
    const auto isStillOwn = isOwn(folder, name, descriptor);
    if (!isStillOwn)
        return std::unexpected(isStillOwn.error());
    return *isStillOwn ? folder.removeFile(name) : OpenFolder::Result<void>{};
}

} // namespace fennik
