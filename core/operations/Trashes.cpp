#include "core/operations/Trashes.h"

#include "core/operations/Relocation.h"
#include "core/operations/UniqueName.h"
#include "core/platform/MadeFolders.h"
#include "core/platform/TrashCan.h"

#include <cerrno>

namespace fennik {

std::expected<FileUrl, std::string> SystemTrash::trash(const FileUrl& item) const {
    return TrashCan::trash(item, Relocation::move);
}

void SystemTrash::forget(const FileUrl& place) const {
    TrashCan::forget(place);
}

std::expected<FileUrl, std::string> FolderTrash::trash(const FileUrl& item) const {
    const auto from = OpenFolder::open(item.parent().path(), FollowLinks::yes);
    const auto to = from ? MadeFolders::make(folder_) : std::unexpected(from.error());
    if (!to)
        return std::unexpected(to.error().reason());
    const std::string name(item.lastComponent());
    for (;;) {
        const auto freeName = UniqueName::free(name, to->folder());
        auto place = folder_.appending(freeName);
        const auto moved = renameExclusively(*from, name, to->folder(), freeName);
        if (moved)
            return place;
        if (moved.error().code == EXDEV) {
            if (auto relocated = Relocation::move(item, place); !relocated)
                return std::unexpected(std::move(relocated.error()));
            return place;
        }
        // Whoever took the name meanwhile keeps it.
        if (moved.error().code != EEXIST)
            return std::unexpected(moved.error().reason());
    }
}

} // namespace fennik
