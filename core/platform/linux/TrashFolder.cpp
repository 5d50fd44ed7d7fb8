#include "core/platform/linux/TrashFolder.h"

#include "core/platform/MadeFolders.h"
#include "core/platform/UserFolders.h"
#include "core/platform/linux/TrashRecord.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

constexpr std::uint16_t privateMode = 0700;
constexpr std::uint16_t privateFileMode = 0600;

std::string userNumber() {
    return std::to_string(geteuid());
}

OpenFolder::Result<OpenFolder> openOrMake(const OpenFolder& parent, const std::string& name) {
    auto opened = parent.openChild(name);
    if (opened || opened.error().code != ENOENT)
        return opened;
    const auto made = parent.makeFolder(name, privateMode);
    if (!made && made.error().code != EEXIST)
        return std::unexpected(made.error());
    return parent.openChild(name);
}

/// A folder at the top of a volume, where others may have put anything.
OpenFolder::Result<OpenFolder> openOrMakeOwn(const OpenFolder& parent, const std::string& name) {
    auto opened = openOrMake(parent, name);
    if (!opened)
        return opened;
    const auto status = opened->status();
    if (!status)
        return std::unexpected(status.error());
    if (status->owner != geteuid() || (status->mode & S_IWOTH) != 0)
        return std::unexpected(PosixError{EPERM});
    return opened;
}

/// The folder that an administrator provides for the trashes of all.
OpenFolder::Result<OpenFolder> openShared(const OpenFolder& top) {
    auto opened = top.openChild(".Trash");
    if (!opened)
        return opened;
    const auto status = opened->status();
    if (!status)
        return std::unexpected(status.error());
    if ((status->mode & S_ISVTX) == 0)
        return std::unexpected(PosixError{EPERM});
    return opened;
}

std::tm localTime() {
    const auto now = std::time(nullptr);
    std::tm result{};
    localtime_r(&now, &result);
    return result;
}

std::unexpected<TrashFailure> failure(TrashFailure::Kind kind, const PosixError& error) {
    return std::unexpected(TrashFailure{.kind = kind, .reason = error.reason()});
}

TrashFailure::Kind kindOf(const PosixError& error) {
    if (error.code == EEXIST)
        return TrashFailure::Kind::taken;
    return error.code == EXDEV ? TrashFailure::Kind::otherVolume : TrashFailure::Kind::failed;
}

} // namespace

FileUrl TrashFolder::homeUrl() {
    // The environment is read at start, before any thread could change it.
    const char* data = std::getenv("XDG_DATA_HOME"); // NOLINT(concurrency-mt-unsafe)
    if (data != nullptr && std::string_view(data).starts_with('/'))
        return FileUrl(data).standardized().appending("Trash");
    return UserFolders::home().appending(".local").appending("share").appending("Trash");
}

bool TrashFolder::isTrash(const FileUrl& url) {
    const auto user = userNumber();
    const bool isShared = url.lastComponent() == user && url.parent().lastComponent() == ".Trash";
    return url.path() == homeUrl().path() || isShared || url.lastComponent() == ".Trash-" + user;
}

TrashFolder::Result<TrashFolder> TrashFolder::home() {
    const auto url = homeUrl();
    const auto folder = MadeFolders::make(url, privateMode);
    if (!folder)
        return std::unexpected(folder.error());
    auto files = openOrMake(folder->folder(), "files");
    auto info = openOrMake(folder->folder(), "info");
    if (!files || !info)
        return std::unexpected((files ? info : files).error());
    return TrashFolder(std::move(*files), std::move(*info), url, std::nullopt);
}

TrashFolder::Result<TrashFolder> TrashFolder::ofVolume(const FileUrl& top) {
    const auto folder = OpenFolder::open(top.path(), FollowLinks::no);
    if (!folder)
        return std::unexpected(folder.error());
    if (const auto shared = openShared(*folder)) {
        auto trash = within(*shared, top.appending(".Trash").appending(userNumber()), top);
        if (trash)
            return trash;
    }
    return within(*folder, top.appending(".Trash-" + userNumber()), top);
}

TrashFolder::Result<TrashFolder> TrashFolder::within(const OpenFolder& folder, const FileUrl& url,
                                                     std::optional<FileUrl> top) {
    const auto trash = openOrMakeOwn(folder, std::string(url.lastComponent()));
    if (!trash)
        return std::unexpected(trash.error());
    auto files = openOrMakeOwn(*trash, "files");
    auto info = openOrMakeOwn(*trash, "info");
    if (!files || !info)
        return std::unexpected((files ? info : files).error());
    return TrashFolder(std::move(*files), std::move(*info), url, std::move(top));
}

std::string TrashFolder::recordedPath(const FileUrl& item) const {
    if (!top_)
        return item.path();
    return item.path().substr(top_->isRoot() ? 1 : top_->path().size() + 1);
}

FileUrl TrashFolder::place(const std::string& name) const {
    return url_.appending("files").appending(name);
}

std::expected<FileUrl, TrashFailure> TrashFolder::take(const TrashItem& item) const {
    return take(item, [&](const std::string& name) -> std::expected<void, TrashFailure> {
        const auto moved = renameExclusively(item.folder, item.name(), files_, name);
        if (!moved)
            return failure(kindOf(moved.error()), moved.error());
        return {};
    });
}

std::expected<FileUrl, TrashFailure> TrashFolder::take(
    const TrashItem& item,
    const std::function<std::expected<void, std::string>(const FileUrl&, const FileUrl&)>& relocate)
    const {
    return take(item, [&](const std::string& name) -> std::expected<void, TrashFailure> {
        if (files_.status(name))
            return failure(TrashFailure::Kind::taken, PosixError{EEXIST});
        if (auto moved = relocate(item.url, place(name)); !moved)
            return std::unexpected(TrashFailure{.reason = std::move(moved.error())});
        return {};
    });
}

std::expected<std::string, TrashFailure> TrashFolder::note(const TrashItem& item,
                                                           TrashNames& names) const {
    const auto record = trashRecord(recordedPath(item.url), localTime());
    for (;;) {
        auto name = names.current();
        auto noted = info_.makeFile(trashRecordName(name), record, privateFileMode);
        // The record has to outlast a loss of power before the item depends on it.
        if (noted) {
            noted = info_.sync();
            if (!noted)
                static_cast<void>(info_.removeFile(trashRecordName(name)));
        }
        if (noted)
            return name;
        const int code = noted.error().code;
        if (code == EEXIST)
            names.takeNext();
        else if (code != ENAMETOOLONG || !names.shorten())
            return failure(TrashFailure::Kind::unrecorded, noted.error());
    }
}

std::expected<FileUrl, TrashFailure> TrashFolder::take(const TrashItem& item,
                                                       const Bring& bring) const {
    for (TrashNames names(item.name());; names.takeNext()) {
        const auto name = note(item, names);
        if (!name)
            return std::unexpected(name.error());
        const auto brought = bring(*name);
        if (brought)
            return place(*name);
        static_cast<void>(info_.removeFile(trashRecordName(*name)));
        if (brought.error().kind != TrashFailure::Kind::taken)
            return std::unexpected(brought.error());
    }
}

} // namespace fennik
