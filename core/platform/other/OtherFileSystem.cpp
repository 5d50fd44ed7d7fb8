#include "core/platform/posix/PosixFileSystem.h"

namespace fennik {

const FileSystem& systemFileSystem() {
    static const PosixFileSystem files;
    return files;
}

} // namespace fennik
