#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/VolumeCalls.h"

#include <cstdio>
#include <unistd.h>

namespace fennik {

OpenFolder::Result<void> renameWhereSupported(const OpenFolder& from, const std::string& name,
                                              const OpenFolder& to, const std::string& newName) {
    if (renameat2(from.descriptor(), name.c_str(), to.descriptor(), newName.c_str(),
                  RENAME_NOREPLACE) != 0)
        return lastError();
    return {};
}

OpenFolder::Result<void> syncVolumeOf(int descriptor) {
    if (retried([descriptor] { return syncfs(descriptor); }) != 0)
        return lastError();
    return {};
}

} // namespace fennik
