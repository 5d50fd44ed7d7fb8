#pragma once

#include "core/platform/FileSystem.h"

namespace fennik {

/// What every POSIX system can do; it reads no folder in bulk.
class PosixFileSystem : public FileSystem {
public:
    Result<FileStatus> status(const std::string& path, FollowLinks follow) const override;
    Result<std::string> linkTarget(const std::string& path) const override;
    Result<std::int64_t> freeSpace(const std::string& path) const override;
    Result<void> checkWritable(const std::string& folder) const override;
    Result<void> readFolder(const std::string& path,
                            const FolderEntryConsumer& consume) const override;
    Result<void> enumerateFolder(const std::string& path,
                                 const FolderEntryConsumer& consume) const override;
    Result<void> readSizes(const std::string& path, FollowLinks follow,
                           const SizeConsumer& consume) const override;
};

/// Whether an entry that could not be examined for this reason is listed all the same, with
/// nothing but its name and type.
bool listsUnexamined(int errorCode);

} // namespace fennik
