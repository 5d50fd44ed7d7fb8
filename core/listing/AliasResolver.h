#pragma once

#include "core/base/FileUrl.h"

#include <optional>

namespace fennik::AliasResolver {

/// Where an alias file leads, without asking the user and without mounting anything; none when it
/// leads nowhere. May wait for the disk. Only the Mac has alias files: elsewhere the reader reports
/// none, and the answer is always none.
std::optional<FileUrl> resolve(const FileUrl& aliasFile);

} // namespace fennik::AliasResolver
