#pragma once

#include "core/platform/FileSystem.h"

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace fennik::test {

/// The real file system, in which chosen calls fail with a chosen error.
class FaultyFileSystem final : public FileSystem {
public:
    enum class Call { status, readFolder, enumerateFolder, readSizes, freeSpace, checkWritable };

    void fail(Call call, int errorCode) { errors_[call] = errorCode; }
    void heal() { errors_.clear(); }
    /// `hook` is called before the sizes of a folder are read, on the reading thread, with its
    /// path.
    void beforeReadSizes(std::function<void(const std::string&)> hook) { hook_ = std::move(hook); }

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

private:
    std::map<Call, int> errors_;
    std::function<void(const std::string&)> hook_ = [](const std::string&) {};
};

} // namespace fennik::test
