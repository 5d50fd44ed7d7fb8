#include "core/archives/ArchiveSupport.h"

#include "core/base/AsciiText.h"

#include <algorithm>
#include <array>

namespace fennik::ArchiveSupport {

namespace {

using std::string_view_literals::operator""sv;

constexpr std::array compoundSuffixes = {"tar.gz"sv, "tar.bz2"sv, "tar.xz"sv, "tar.lzma"sv,
                                         "tar.z"sv};
constexpr std::array extensions = {"zip"sv,  "jar"sv, "rar"sv, "7z"sv,  "tar"sv,  "tgz"sv, "tbz"sv,
                                   "tbz2"sv, "tb2"sv, "txz"sv, "tlz"sv, "gz"sv,   "bz2"sv, "xz"sv,
                                   "lzma"sv, "cab"sv, "lha"sv, "lzh"sv, "cpio"sv, "z"sv};
constexpr std::array singleStreams = {"gz"sv, "bz2"sv, "xz"sv, "lzma"sv, "z"sv};

} // namespace

std::optional<std::string> archiveExtension(std::string_view fileName) {
    const auto lowered = asciiLowered(fileName);
    for (const auto suffix : compoundSuffixes)
        if (lowered.size() > suffix.size() + 1 && lowered.ends_with(suffix) &&
            lowered[lowered.size() - suffix.size() - 1] == '.')
            return std::string(suffix);
    const auto dot = lowered.rfind('.');
    if (dot == std::string::npos || dot == 0)
        return std::nullopt;
    auto extension = lowered.substr(dot + 1);
    if (std::ranges::find(extensions, extension) == extensions.end())
        return std::nullopt;
    return extension;
}

bool isSingleStreamCompressed(std::string_view extension) {
    return std::ranges::find(singleStreams, extension) != singleStreams.end();
}

} // namespace fennik::ArchiveSupport
