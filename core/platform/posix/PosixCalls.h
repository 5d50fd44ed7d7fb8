#pragma once

#include "core/platform/FileSystem.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <functional>
#include <span>
#include <string>
#include <sys/stat.h>

namespace fennik {

std::unexpected<PosixError> lastError();

/// Makes the call again as long as a signal interrupts it.
template <class Call>
auto retried(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Writes all of it, else -1 with errno.
int writeAllAt(int descriptor, std::span<const std::byte> bytes, std::int64_t offset);

FileStatus statusFrom(const struct stat& info);
/// Of the file that is open as `descriptor`.
FileSystem::Result<FileStatus> statusOf(int descriptor);
/// Relative to the open folder; of the link where it is one.
FileSystem::Result<FileStatus> statusAt(int folder, const std::string& path);
FileSystem::Result<std::string> linkTargetAt(int folder, const std::string& path);

/// The type in the file format bits of a mode.
FileType fileTypeOfMode(mode_t mode);
/// The type that a DT_ constant says; `other` for DT_UNKNOWN.
FileType fileTypeOfEntry(unsigned char entryType);

/// All entries of an open folder but "." and "..", by the portable folder stream. The consumer may
/// have seen a part of them when the call fails. Takes `descriptor`, which must be a new one.
FileSystem::Result<void> readStream(int descriptor,
                                    const std::function<void(const dirent&)>& consume);

} // namespace fennik
