#pragma once

#include "core/platform/FileSystem.h"

namespace fennik {

/// `FileSystem::readFolder` with the calls of Linux: names through getdents64 into buffers of
/// 256 KiB, facts through statx relative to the folder's descriptor. From a few thousand entries
/// on, a second thread examines names while this one still reads them. Costs one statx an entry
/// and one getdents64 a buffer.
FileSystem::Result<void> readFolderInBulk(const std::string& path,
                                          const FolderEntryConsumer& consume);

} // namespace fennik
