#include "core/platform/linux/BulkFolderReader.h"
#include "core/platform/linux/SizeReader.h"
#include "core/platform/posix/PosixFileSystem.h"

namespace fennik {

namespace {

class LinuxFileSystem final : public PosixFileSystem {
public:
    Result<void> readFolder(const std::string& path,
                            const FolderEntryConsumer& consume) const override {
        return readFolderInBulk(path, consume);
    }
    Result<void> readSizes(const std::string& path, FollowLinks follow,
                           const SizeConsumer& consume) const override {
        return readSizesInBulk(path, follow, consume);
    }
};

} // namespace

const FileSystem& systemFileSystem() {
    static const LinuxFileSystem files;
    return files;
}

} // namespace fennik
