#pragma once

#include "core/platform/FileSystem.h"

namespace fennik {

/// `FileSystem::readSizes` with the calls of Linux: the types come with the names from getdents64,
/// and only regular files cost a statx, for nothing but the size.
FileSystem::Result<void> readSizesInBulk(const std::string& path, FollowLinks follow,
                                         const SizeConsumer& consume);

} // namespace fennik
