#pragma once

#include "core/listing/FileItems.h"
#include "core/platform/FileSystem.h"
#include "core/platform/Volumes.h"

#include <expected>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

/// What a panel calls to show a folder. Waits for the disk: called on workers, several at once.
namespace fennik::FolderOpener {

/// A link that was not followed, as a volume that may not answer would have to be asked.
struct RemoteLink {
    std::string name;
    bool isFolder = false; ///< what it was taken for
};
/// By the mount point of the volume.
using RemoteLinks = std::map<std::string, std::vector<RemoteLink>>;
/// Whether a remote link led to a folder when it was last followed, by its path.
using KnownLinks = std::unordered_map<std::string, bool>;

/// A folder that was read.
struct Listing {
    FileUrl directory;                     ///< the folder really listed
    FileItems items;                       ///< in the order of the system, without ".."
    std::optional<std::string> selectName; ///< where the cursor belongs when a file was given
    RemoteLinks remoteLinks = {};
};

/// Why a folder could not be shown.
struct Failure {
    enum class Case {
        noPermission, ///< the system refused access
        notFound,     ///< it does not exist, or its volume cannot be reached
        unreadable,   ///< anything else, said in `reason`
    };
    Case kind = Case::notFound;
    FileUrl url;
    std::string reason; ///< the system's text; empty unless `unreadable`

    static Failure noPermission(FileUrl url);
    static Failure notFound(FileUrl url);
    static Failure unreadable(FileUrl url, std::string reason);
    /// The failure that an error of the system on `url` stands for.
    static Failure of(PosixError error, FileUrl url);

    /// The whole sentence for the user, in Czech.
    std::string message() const;

    friend bool operator==(const Failure&, const Failure&) = default;
};

/// What becomes of hidden entries.
enum class ShowHidden { no, yes };

/// Lists the folder at `url`, or the folder of the file at `url` with the file selected. Links and
/// alias files are followed for `url` itself; for its entries one question to the disk is asked per
/// link, and some more where remote volumes are `mounted`. A remote link that is not among `known`
/// is taken for one to a file. Never throws.
[[nodiscard]] std::expected<Listing, Failure> open(const FileSystem& files, const FileUrl& url,
                                                   ShowHidden showHidden,
                                                   Volumes::Source mounted = {},
                                                   const KnownLinks& known = {});

} // namespace fennik::FolderOpener
