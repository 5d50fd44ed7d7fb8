#include "core/listing/PackageTypes.h"

#include <algorithm>
#include <array>
#include <string>

namespace fennik::PackageTypes {

namespace {

/// Lower case.
constexpr std::array<std::string_view, 26> extensions{
    "app",          "appex",     "aplibrary", "band",          "bundle",        "component",
    "docset",       "dsym",      "framework", "imovielibrary", "kext",          "key",
    "lpdf",         "mpkg",      "numbers",   "pages",         "photoslibrary", "pkg",
    "playground",   "plugin",    "prefpane",  "qlgenerator",   "rtfd",          "saver",
    "sparsebundle", "xcodeproj",
};

char lowered(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

} // namespace

bool isPackageExtension(std::string_view extension) {
    std::string wanted(extension);
    std::ranges::transform(wanted, wanted.begin(), lowered);
    return std::ranges::find(extensions, std::string_view(wanted)) != extensions.end();
}

bool isPackageName(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return isPackageExtension(name.substr(dot + 1));
}

} // namespace fennik::PackageTypes
