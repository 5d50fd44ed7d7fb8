#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/OpenFolder.h"
#include "core/platform/linux/TrashRecord.h"

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace fennik {

/// An item that is to go to a trash.
struct TrashItem {
    const OpenFolder& folder; ///< that holds it
    FileUrl url = {};         ///< its real path
    std::string name() const { return std::string(url.lastComponent()); }
};

struct TrashFailure {
    enum class Kind {
        taken,       ///< something lies at that place of the trash
        otherVolume, ///< the item cannot be renamed into it
        unrecorded,  ///< the trash takes no record
        failed,
    };
    Kind kind = Kind::failed;
    std::string reason = {};
};

/// One trash with its two folders held open: the items, and for each of them a record that is there
/// before it. Other programs use the same folders at the same time, and nothing locks them.
class TrashFolder {
public:
    template <class T>
    using Result = OpenFolder::Result<T>;

    /// Where the user's own one is: $XDG_DATA_HOME/Trash where that is absolute, else
    /// ~/.local/share/Trash.
    static FileUrl homeUrl();
    /// The user's own one, made where it is missing.
    static Result<TrashFolder> home();
    /// The one for this user at the top of a volume: `top`/.Trash/UID if the administrator has
    /// provided `top`/.Trash as the standard wants it, else `top`/.Trash-UID, made where it is
    /// missing. A failure where these cannot be trusted: links, owned by others, open to all.
    static Result<TrashFolder> ofVolume(const FileUrl& top);
    /// Whether the path is the one of a trash: of `homeUrl`, or that of a user on a volume.
    static bool isTrash(const FileUrl& url);

    /// Takes the item, by a rename. Where it lies then.
    std::expected<FileUrl, TrashFailure> take(const TrashItem& item) const;
    /// The same by `relocate`, whose errors are reasons.
    std::expected<FileUrl, TrashFailure>
    take(const TrashItem& item,
         const std::function<std::expected<void, std::string>(const FileUrl& from,
                                                              const FileUrl& to)>& relocate) const;

private:
    /// Brings the item to the place of that name.
    using Bring = std::function<std::expected<void, TrashFailure>(const std::string& name)>;

    TrashFolder(OpenFolder files, OpenFolder info, FileUrl url, std::optional<FileUrl> top)
        : files_(std::move(files)),
          info_(std::move(info)),
          url_(std::move(url)),
          top_(std::move(top)) {}
    static Result<TrashFolder> within(const OpenFolder& folder, const FileUrl& url,
                                      std::optional<FileUrl> top);

    std::expected<FileUrl, TrashFailure> take(const TrashItem& item, const Bring& bring) const;
    /// Writes the record under the first of the names that is free, which it returns.
    std::expected<std::string, TrashFailure> note(const TrashItem& item, TrashNames& names) const;
    std::string recordedPath(const FileUrl& item) const;
    FileUrl place(const std::string& name) const;

    OpenFolder files_;
    OpenFolder info_;
    FileUrl url_;
    std::optional<FileUrl> top_; ///< of the volume, unless this is the user's own one
};

} // namespace fennik
