#pragma once

#include "core/platform/OpenFolder.h"

namespace fennik {

/// The system's own exclusive rename. EINVAL, ENOSYS or ENOTSUP: the system or the file system
/// knows none, or a folder is to go into itself.
OpenFolder::Result<void> renameWhereSupported(const OpenFolder& from, const std::string& name,
                                              const OpenFolder& to, const std::string& newName);

/// Waits for the volume of an open file. ENOTSUP where the system has no such call.
OpenFolder::Result<void> syncVolumeOf(int descriptor);

} // namespace fennik
