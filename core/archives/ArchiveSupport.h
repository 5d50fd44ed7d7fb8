#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What the name of a file says about archives. Asks no disk.
namespace fennik::ArchiveSupport {

/// The extension, in lower case, by which the name is that of an archive: "tar.gz" or "zip". None
/// where it is not.
std::optional<std::string> archiveExtension(std::string_view fileName);

/// Whether a file with this extension is one compressed file, and no collection.
bool isSingleStreamCompressed(std::string_view extension);

} // namespace fennik::ArchiveSupport
