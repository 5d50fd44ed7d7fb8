#pragma once

#include <string_view>

namespace fennik::PackageTypes {

/// Whether a directory with this extension (without the dot, any case) is a package: a folder that
/// its programs treat as one document or one application. Safe on any thread.
bool isPackageExtension(std::string_view extension);

/// The same question of a directory's whole name.
bool isPackageName(std::string_view name);

} // namespace fennik::PackageTypes
