#include "core/listing/DirectoryReader.h"

#include <cerrno>

namespace fennik::DirectoryReader {

namespace {

FileKind kindOf(FileType type) {
    switch (type) {
    case FileType::regular:
        return FileKind::file;
    case FileType::directory:
        return FileKind::directory;
    case FileType::symlink:
        return FileKind::symlink;
    case FileType::other:
        break;
    }
    return FileKind::other;
}

} // namespace

std::expected<void, PosixError> read(const FileSystem& files, const FileUrl& folder,
                                     const Consumer& consume) {
    const auto convert = [&consume](const FolderEntry& entry) {
        consume({.name = entry.name,
                 .kind = kindOf(entry.type),
                 .size = entry.size,
                 .modified = entry.modified,
                 .mode = entry.mode,
                 .hiddenFlag = entry.hiddenFlag,
                 .isAlias = entry.isAlias && entry.type == FileType::regular});
    };
    auto result = files.readFolder(folder.path(), convert);
    if (!result && (result.error().code == ENOTSUP || result.error().code == EINVAL))
        result = files.enumerateFolder(folder.path(), convert);
    return result;
}

} // namespace fennik::DirectoryReader
