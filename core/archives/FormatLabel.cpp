#include "core/archives/FormatLabel.h"

#include "core/archives/ArchiveSupport.h"

namespace fennik {

std::string formatLabel(const ArchiveFacts& facts, const FileUrl& url) {
    switch (facts.formatFamily) {
    case ArchiveFamily::zip:
        return "ZIP";
    case ArchiveFamily::rar:
        return "RAR";
    case ArchiveFamily::sevenZip:
        return "7z";
    case ArchiveFamily::rar5:
        return "RAR5";
    default:
        break;
    }
    if (auto extension = ArchiveSupport::archiveExtension(url.lastComponent()))
        return *std::move(extension);
    return facts.isRaw() ? "komprimovaný soubor" : facts.formatName;
}

} // namespace fennik
