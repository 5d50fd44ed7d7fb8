#include "core/archives/EntryTraits.h"

#include "core/base/CzechText.h"

#include <algorithm>
#include <ranges>

namespace fennik {

std::string_view nameOf(const ArchiveEntry& entry) {
    const std::string_view path(entry.path);
    return path.substr(path.rfind('/') + 1);
}

std::uint16_t plainMode(const ArchiveEntry& entry) {
    return entry.mode & 0777U;
}

bool leadsDown(std::string_view path) {
    if (path.contains('\0'))
        return false;
    return std::ranges::none_of(std::views::split(path, '/'), [](const auto& part) {
        const std::string_view name(part);
        return name.empty() || name == "." || name == "..";
    });
}

std::string sentenceOf(const ArchiveEntry& entry, const ArchiveError& error) {
    return sentenceOf(entry, error.text.empty() ? error.message() : error.text);
}

std::string sentenceOf(const ArchiveEntry& entry, std::string_view reason) {
    return (quoted(nameOf(entry)) + " nejde rozbalit: ").append(reason);
}

} // namespace fennik
