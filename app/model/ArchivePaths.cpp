#include "app/model/ArchivePaths.h"

#include "core/archives/ArchiveSupport.h"

#include <deque>

namespace fennik::app::ArchivePaths {

namespace {

constexpr int mostLinks = 40;

/// Puts the components of `path` before `rest`.
void prepend(std::string_view path, std::deque<std::string>& rest) {
    for (;;) {
        rest.emplace_front(name(path));
        if (!path.contains('/'))
            return;
        path = parent(path);
    }
}

} // namespace

bool mayBeArchive(FileKind kind, std::string_view name) {
    const bool mayBeFile = kind == FileKind::file || kind == FileKind::symlink;
    return mayBeFile && ArchiveSupport::archiveExtension(name);
}

std::string child(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty())
        path += '/';
    return path.append(name);
}

std::string_view parent(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::string_view name(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool isFolder(const ArchiveIndex& index, std::string_view path) {
    if (path.empty())
        return true;
    const auto entry = index.find(path);
    return entry && entry->kind == ArchiveEntry::Kind::directory;
}

std::optional<std::string> resolved(const ArchiveIndex& index, std::string_view path) {
    std::string reached;
    std::deque<std::string> rest;
    prepend(path, rest);
    for (int links = 0; !rest.empty();) {
        const auto component = rest.front();
        rest.pop_front();
        if (component.empty() || component == ".")
            continue;
        if (component == "..") {
            if (reached.empty())
                return std::nullopt;
            reached = std::string(parent(reached));
            continue;
        }
        auto next = child(reached, component);
        const auto entry = index.find(next);
        if (!entry)
            return std::nullopt;
        if (!entry->linkTarget) {
            reached = std::move(next);
            continue;
        }
        const auto& target = *entry->linkTarget;
        if (++links > mostLinks || target.starts_with('/'))
            return std::nullopt;
        // A hard link is written from the root of the archive.
        if (entry->kind == ArchiveEntry::Kind::hardlink)
            reached.clear();
        prepend(target, rest);
    }
    return reached;
}

std::string nearestFolder(const ArchiveIndex& index, std::string_view path) {
    while (!isFolder(index, path))
        path = parent(path);
    return std::string(path);
}

} // namespace fennik::app::ArchivePaths
