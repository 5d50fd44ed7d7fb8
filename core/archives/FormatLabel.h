#pragma once

#include "core/archives/EntryStream.h"

#include <string>

namespace fennik {

/// "ZIP", "7z", "tar.gz": what the format of an archive is called for the user. Empty where nothing
/// is known of it.
std::string formatLabel(const ArchiveFacts& facts, const FileUrl& url);

} // namespace fennik
