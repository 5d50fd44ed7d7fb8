#pragma once

#include "core/archives/ArchiveIndex.h"
#include "core/listing/FileItem.h"

#include <optional>
#include <string>
#include <string_view>

/// What leads to archives, and the paths of entries inside one. "" is the root.
namespace fennik::app::ArchivePaths {

/// Whether an item is called like an archive, and is a file or a link that may lead to one.
bool mayBeArchive(FileKind kind, std::string_view name);

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
