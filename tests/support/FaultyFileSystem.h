#pragma once

#include "core/platform/FileSystem.h"

#include <map>
#include <string>

namespace fennik::test {

/// The real file system, in which chosen calls fail with a chosen error.
class FaultyFileSystem final : public FileSystem {
public:
    enum class Call { status, readFolder, enumerateFolder, freeSpace };

    void fail(Call call, int errorCode) { errors_[call] = errorCode; }
    void heal() { errors_.clear(); }

    Result<FileStatus> status(const std::string& path, FollowLinks follow) const override;
    Result<std::string> linkTarget(const std::string& path) const override;
    Result<std::int64_t> freeSpace(const std::string& path) const override;
    Result<void> readFolder(const std::string& path,
                            const FolderEntryConsumer& consume) const override;
    Result<void> enumerateFolder(const std::string& path,
                                 const FolderEntryConsumer& consume) const override;

private:
    std::map<Call, int> errors_;
};

} // namespace fennik::test
