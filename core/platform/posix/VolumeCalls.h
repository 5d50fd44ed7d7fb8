#pragma once

#include "core/platform/OpenFolder.h"

namespace fennik {

/// The system's own exclusive rename. EINVAL, ENOSYS or ENOTSUP: the system or the file system
/// knows none, or a folder is to go into itself.
OpenFolder::Result<void> renameWhereSupported(const OpenFolder& from, const std::string& name,
                                              const OpenFolder& to, const std::string& newName);

/// Waits for the volume of an open file. ENOTSUP where the system has no such call.
OpenFolder::Result<void> syncVolumeOf(int descriptor);

/// Whether waiting for the volume of an open file waits until the data is on its disk. A volume
/// behind a process or a server may have no more than handed it over by then.
bool reachesDiskBySync(int descriptor);

/// Opens a folder whose entries can be reached by their names, without the right to list them.
/// Nothing can be read, synced or changed through the open file itself. As openat: the number of
/// the open file, or negative with errno; EACCES where the system has no such thing.
int openWithoutListing(int folder, const std::string& path, int linkFlag);

/// Waits until the names in a folder opened so are on the disk.
OpenFolder::Result<void> syncNamesWithoutListing(int folder);

} // namespace fennik
