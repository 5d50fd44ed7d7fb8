#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/OpenFolder.h"

#include <functional>
#include <string>
#include <string_view>

namespace fennik::UniqueName {

/// Whether somebody has the name: an `errno` of its examination, 0 when it is there.
using Examine = std::function<int(const std::string& name)>;

/// The first name of "name", "base 2.ext", "base 3.ext" … that nobody has. A dangling link counts.
/// A name of more than 255 bytes is shortened at the end of its base, between characters. When the
/// examination fails otherwise than by ENOENT, ENOTDIR or ENAMETOOLONG, the name at hand is
/// returned, and creating it will tell the reason. Creating still has to be exclusive.
std::string free(std::string_view name, const Examine& examine);
std::string free(std::string_view name, const OpenFolder& folder);
/// The same as a path in `folder`.
FileUrl url(const FileUrl& folder, std::string_view name);

} // namespace fennik::UniqueName
