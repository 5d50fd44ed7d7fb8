#include "core/platform/linux/TrashRefusal.h"

#include "core/platform/FileSystem.h"
#include "core/platform/UserFolders.h"
#include "core/platform/linux/ForeignContent.h"
#include "core/platform/linux/TrashFolder.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fennik {

namespace {

constexpr auto isInTrash = "už leží v Koši.";
constexpr auto isTrash = "je to samotný Koš.";

/// The place with all links followed, or as it is written where there is nothing yet.
FileUrl realUrl(const FileUrl& url) {
    std::error_code error;
    const auto path = std::filesystem::weakly_canonical(url.path(), error);
    return error ? url : FileUrl(path.native());
}

bool isBelow(const FileUrl& url, const FileUrl& folder) {
    return !url.isRoot() && (folder.isRoot() || url.path().starts_with(folder.path() + "/"));
}

/// Whether the folder is that item or lies in it, by whatever path.
enum class Relation { none, same, inside };
Relation relationTo(const FileIdentity& item, FileUrl folder) {
    for (auto relation = Relation::same;; relation = Relation::inside) {
        const auto status = systemFileSystem().status(folder.path(), FollowLinks::yes);
        if (status && status->identity() == item)
            return relation;
        if (folder.isRoot())
            return Relation::none;
        folder = folder.parent();
    }
}

std::optional<std::string> refusalByVolumes(const FileUrl& item,
                                            const std::vector<Volume>& volumes) {
    if (item.isRoot())
        return "je to připojený disk.";
    bool contains = false;
    for (const auto& volume : volumes) {
        if (volume.mountPoint == item.path())
            return "je to připojený disk.";
        contains = contains || isBelow(FileUrl(volume.mountPoint), item);
    }
    if (contains)
        return "obsahuje připojený disk.";
    return std::nullopt;
}

bool isTrashName(std::string_view name) {
    constexpr std::string_view prefix = ".Trash-";
    if (!name.starts_with(prefix))
        return name == ".Trash";
    name.remove_prefix(prefix.size());
    return !name.empty() && std::ranges::all_of(name, [](char c) { return c >= '0' && c <= '9'; });
}

/// Trashes of anybody at the top of the item's volume.
std::optional<std::string> refusalByTop(const FileUrl& item, bool isFolder,
                                        const std::vector<Volume>& volumes) {
    const FileUrl top(Volumes::containing(item.path(), volumes).mountPoint);
    for (auto url = item; isBelow(url, top); url = url.parent()) {
        if (url.parent().path() != top.path() || !isTrashName(url.lastComponent()))
            continue;
        if (url != item)
            return isInTrash;
        if (isFolder)
            return isTrash;
    }
    return std::nullopt;
}

std::optional<std::string> refusalByFolders(const FileIdentity& item, const FileUrl& homeTrash) {
    const auto home = relationTo(item, realUrl(UserFolders::home()));
    if (home == Relation::same)
        return "je to domovská složka.";
    const auto trash = relationTo(item, homeTrash);
    if (trash != Relation::none)
        return trash == Relation::same ? isTrash : "obsahuje samotný Koš.";
    if (home == Relation::inside)
        return "obsahuje domovskou složku.";
    return std::nullopt;
}

} // namespace

std::optional<std::string> trashRefusal(const FileUrl& item, const std::vector<Volume>& volumes) {
    if (auto refusal = refusalByVolumes(item, volumes))
        return refusal;
    const auto homeTrash = realUrl(TrashFolder::homeUrl());
    if (isBelow(item, homeTrash))
        return isInTrash;
    const auto status = systemFileSystem().status(item.path(), FollowLinks::no);
    const bool isFolder = status && status->type == FileType::directory;
    if (auto refusal = refusalByTop(item, isFolder, volumes))
        return refusal;
    if (!isFolder)
        return std::nullopt;
    if (auto refusal = refusalByFolders(status->identity(), homeTrash))
        return refusal;
    if (holdsForeignContent(item))
        return "obsahuje cizí soubory, které by z Koše nešlo odstranit.";
    return std::nullopt;
}

} // namespace fennik
