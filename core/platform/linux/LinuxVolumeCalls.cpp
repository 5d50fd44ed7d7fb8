#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/VolumeCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
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

bool reachesDiskBySync(int descriptor) {
    constexpr std::array<std::uint32_t, 8> ofThisKernel{
        EXT4_SUPER_MAGIC, BTRFS_SUPER_MAGIC, XFS_SUPER_MAGIC,   F2FS_SUPER_MAGIC,
        TMPFS_MAGIC,      MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC};
    struct statfs info{};
    return retried([&] { return fstatfs(descriptor, &info); }) == 0 &&
           std::ranges::find(ofThisKernel, static_cast<std::uint32_t>(info.f_type)) !=
               ofThisKernel.end();
}

int openWithoutListing(int folder, const std::string& path, int linkFlag) {
    return retried(
        [&] { return openat(folder, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | linkFlag); });
}

OpenFolder::Result<void> syncNamesWithoutListing(int folder) {
    // A file without a name needs no right to list, and belongs to the same volume.
    const Descriptor file(retried([folder] {
        return openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    }));
    if (file.number() < 0)
        return lastError();
    return syncVolumeOf(file.number());
}

} // namespace fennik
