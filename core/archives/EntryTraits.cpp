#include "core/archives/EntryTraits.h"

#include "core/base/CzechText.h"

namespace fennik {

std::string_view nameOf(const ArchiveEntry& entry) {
    const std::string_view path(entry.path);
    return path.substr(path.rfind('/') + 1);
}

std::uint16_t plainMode(const ArchiveEntry& entry) {
    return entry.mode & 0777U;
}

std::string sentenceOf(const ArchiveEntry& entry, const ArchiveError& error) {
    return sentenceOf(entry, error.text.empty() ? error.message() : error.text);
}

std::string sentenceOf(const ArchiveEntry& entry, std::string_view reason) {
    return (quoted(nameOf(entry)) + " nejde rozbalit: ").append(reason);
}

} // namespace fennik
