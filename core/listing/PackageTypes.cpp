#include "core/listing/PackageTypes.h"

#include "core/base/AsciiText.h"

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

} // namespace

bool isPackageExtension(std::string_view extension) {
    const auto wanted = asciiLowered(extension);
    return std::ranges::find(extensions, std::string_view(wanted)) != extensions.end();
}

bool isPackageName(std::string_view name) {
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return isPackageExtension(name.substr(dot + 1));
}

} // namespace fennik::PackageTypes
