#include "core/archives/ArchiveFormat.h"

namespace fennik {

std::string_view extensionOf(ArchiveFormat format) {
    switch (format) {
    case ArchiveFormat::zip:
        return "zip";
    case ArchiveFormat::sevenZip:
        return "7z";
    case ArchiveFormat::tarGz:
        return "tar.gz";
    case ArchiveFormat::tarXz:
        return "tar.xz";
    case ArchiveFormat::tarBz2:
        break;
    }
    return "tar.bz2";
}

} // namespace fennik
