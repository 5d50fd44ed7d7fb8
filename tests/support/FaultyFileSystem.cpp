#include "tests/support/FaultyFileSystem.h"

namespace fennik::test {

namespace {

template <class Result, class Errors, class Call, class Real>
Result failOr(const Errors& errors, Call call, Real real) {
    const auto chosen = errors.find(call);
    return chosen == errors.end() ? real() : Result(std::unexpected(PosixError{chosen->second}));
}

} // namespace

FileSystem::Result<FileStatus> FaultyFileSystem::status(const std::string& path,
                                                        FollowLinks follow) const {
    return failOr<Result<FileStatus>>(errors_, Call::status,
                                      [&] { return systemFileSystem().status(path, follow); });
}

FileSystem::Result<std::string> FaultyFileSystem::linkTarget(const std::string& path) const {
    return systemFileSystem().linkTarget(path);
}

FileSystem::Result<std::int64_t> FaultyFileSystem::freeSpace(const std::string& path) const {
    return failOr<Result<std::int64_t>>(errors_, Call::freeSpace,
                                        [&] { return systemFileSystem().freeSpace(path); });
}

FileSystem::Result<void> FaultyFileSystem::checkWritable(const std::string& folder) const {
    return failOr<Result<void>>(errors_, Call::checkWritable,
                                [&] { return systemFileSystem().checkWritable(folder); });
}

FileSystem::Result<void> FaultyFileSystem::readFolder(const std::string& path,
                                                      const FolderEntryConsumer& consume) const {
    return failOr<Result<void>>(errors_, Call::readFolder,
                                [&] { return systemFileSystem().readFolder(path, consume); });
}

FileSystem::Result<void>
FaultyFileSystem::enumerateFolder(const std::string& path,
                                  const FolderEntryConsumer& consume) const {
    return failOr<Result<void>>(errors_, Call::enumerateFolder,
                                [&] { return systemFileSystem().enumerateFolder(path, consume); });
}

FileSystem::Result<void> FaultyFileSystem::readSizes(const std::string& path, FollowLinks follow,
                                                     const SizeConsumer& consume) const {
    hook_(path);
    return failOr<Result<void>>(errors_, Call::readSizes, [&] {
        return systemFileSystem().readSizes(path, follow, consume);
    });
}

} // namespace fennik::test
