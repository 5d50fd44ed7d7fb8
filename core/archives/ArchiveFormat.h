#pragma once

#include <array>
#include <string_view>

namespace fennik {

/// What can be packed into. Much more can be read.
enum class ArchiveFormat { zip, sevenZip, tarGz, tarXz, tarBz2 };

inline constexpr std::array allArchiveFormats = {ArchiveFormat::zip, ArchiveFormat::sevenZip,
                                                 ArchiveFormat::tarGz, ArchiveFormat::tarXz,
                                                 ArchiveFormat::tarBz2};

/// "tar.gz": the extension of the archive's name, without a leading dot.
std::string_view extensionOf(ArchiveFormat format);

} // namespace fennik
