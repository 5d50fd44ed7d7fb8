#pragma once

#include "core/archives/ArchiveIndex.h"

#include <optional>
#include <string>
#include <string_view>

/// Paths of entries inside an archive. "" is the root.
namespace fennik::app::ArchivePaths {

std::string child(std::string_view folder, std::string_view name);
std::string_view parent(std::string_view path);
std::string_view name(std::string_view path);

bool isFolder(const ArchiveIndex& index, std::string_view path);
/// Where `path` leads when all links on the way are followed, hard ones too; none where it leads to
/// nothing inside the archive.
std::optional<std::string> resolved(const ArchiveIndex& index, std::string_view path);
/// The folder itself or, where it is none, the nearest one above it.
std::string nearestFolder(const ArchiveIndex& index, std::string_view path);

} // namespace fennik::app::ArchivePaths
