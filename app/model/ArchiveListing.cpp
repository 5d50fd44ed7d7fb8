#include "app/model/ArchiveListing.h"

#include "app/model/ArchivePaths.h"
#include "core/listing/PackageTypes.h"

#include <string>
#include <utility>

namespace fennik::app {

namespace {

using Kind = ArchiveEntry::Kind;

FileKind kindOf(const ArchiveEntry& entry, std::string_view name) {
    switch (entry.kind) {
    case Kind::directory:
        return PackageTypes::isPackageName(name) ? FileKind::package : FileKind::directory;
    case Kind::symlink:
        return FileKind::symlink;
    case Kind::file:
    case Kind::hardlink:
        break;
    }
    return FileKind::file;
}

} // namespace

ArchiveListing ArchiveListing::of(const ArchiveBrowse& browse) {
    const auto& index = *browse.index;
    const auto names = index.children(browse.inner);
    ArchiveListing listing;
    FileItems::Builder builder(FileUrl(browse.location().path(), FileUrl::Form::directory),
                               names.size());
    for (const auto name : names) {
        const auto path = ArchivePaths::child(browse.inner, name);
        const auto entry = index.find(path);
        if (!entry)
            continue;
        const auto target = entry->linkTarget ? ArchivePaths::resolved(index, path) : std::nullopt;
        FileItemView item{.name = name,
                          .kind = kindOf(*entry, name),
                          .isHidden = name.starts_with('.'),
                          .size = entry->size,
                          .modified = entry->modified,
                          .mode = entry->mode};
        if (entry->kind == Kind::symlink) {
            item.linksToDirectory = target && ArchivePaths::isFolder(index, *target);
            listing.linkTargets.emplace_back(
                name, LinkTarget{.path = entry->linkTarget.value_or(""), .isBroken = !target});
        } else if (entry->kind == Kind::hardlink && target && !target->empty()) {
            item.size = index.find(*target)->size;
        } else if (entry->kind == Kind::directory) {
            listing.folderSizes.emplace(name, index.folderSize(path));
        }
        builder.add(item);
    }
    listing.items = builder.finish();
    return listing;
}

} // namespace fennik::app
