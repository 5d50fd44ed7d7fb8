#include "core/platform/TrashCan.h"

#include "core/platform/OpenFolder.h"
#include "core/platform/Volumes.h"
#include "core/platform/linux/TrashFolder.h"
#include "core/platform/linux/TrashRecord.h"
#include "core/platform/linux/TrashRefusal.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace fennik::TrashCan {

namespace {

using Trashed = std::expected<FileUrl, TrashFailure>;

std::unexpected<std::string> reason(int code) {
    return std::unexpected(PosixError{code}.reason());
}

Trashed unusable(const PosixError& error) {
    return std::unexpected(
        TrashFailure{.kind = TrashFailure::Kind::unrecorded, .reason = error.reason()});
}

bool isLastWord(const Trashed& trashed) {
    return trashed || trashed.error().kind == TrashFailure::Kind::failed;
}

/// Which trash is the right one is told by the rename alone: one volume can be mounted at several
/// places, between which nothing can be renamed, and have parts with numbers of their own.
Trashed taken(const TrashItem& item, const FileUrl& top, const Relocate& relocate) {
    const auto home = TrashFolder::home();
    auto byHome = home ? home->take(item) : unusable(home.error());
    if (isLastWord(byHome))
        return byHome;
    const auto ofVolume = TrashFolder::ofVolume(top);
    if (auto byVolume = ofVolume ? ofVolume->take(item) : unusable(ofVolume.error());
        isLastWord(byVolume))
        return byVolume;
    if (byHome.error().kind != TrashFailure::Kind::otherVolume)
        return byHome;
    return home->take(item, relocate);
}

} // namespace

std::expected<FileUrl, std::string> trash(const FileUrl& item, const Relocate& relocate) {
    const auto volumes = Volumes::mounted();
    if (item.lastComponent() == "." || item.lastComponent() == "..")
        return reason(EINVAL);
    std::error_code error;
    const auto parent = std::filesystem::canonical(item.parent().path(), error);
    if (error)
        return reason(error.value());
    const FileUrl parentUrl(parent.native());
    const auto url = item.isRoot() ? item : parentUrl.appending(item.lastComponent());
    if (auto refusal = trashRefusal(url, volumes))
        return std::unexpected(std::move(*refusal));
    const auto folder = OpenFolder::open(parentUrl.path(), FollowLinks::no);
    if (!folder)
        return reason(folder.error().code);
    const TrashItem trashed{.folder = *folder, .url = url};
    if (const auto status = folder->status(trashed.name()); !status)
        return reason(status.error().code);
    if (faccessat(folder->descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
        return reason(errno);
    const FileUrl top(Volumes::containing(parentUrl.path(), volumes).mountPoint);
    auto place = taken(trashed, top, relocate);
    if (!place)
        return std::unexpected(std::move(place.error().reason));
    return std::move(*place);
}

void forget(const FileUrl& place) {
    const auto files = place.parent();
    const auto url = files.parent();
    if (files.lastComponent() != "files" || !TrashFolder::isTrash(url))
        return;
    const auto folder = OpenFolder::open(url.path(), FollowLinks::yes);
    if (!folder)
        return;
    const auto items = folder->openChild("files");
    const auto info = folder->openChild("info");
    const std::string name(place.lastComponent());
    if (!items || !info)
        return;
    if (const auto left = items->status(name); left || left.error().code != ENOENT)
        return;
    // The item is back where it belongs: a record that cannot be removed harms nothing but a list.
    static_cast<void>(info->removeFile(trashRecordName(name)));
}

} // namespace fennik::TrashCan
