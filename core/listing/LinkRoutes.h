#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/FileSystem.h"
#include "core/platform/Volumes.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace fennik {

/// Tells which links of a folder lead to a volume that may not answer, without asking such a
/// volume: links are read one by one, on local volumes only. Waits for local disks and for the
/// volume of the folder, which answers whoever lists it.
class LinkRoutes {
public:
    /// `mounted` tells what is mounted, when the first link is asked about; without it, all links
    /// count as local.
    LinkRoutes(const FileSystem& files, FileUrl folder, Volumes::Source mounted);

    /// The mount point of the remote volume that somebody who follows the link `name` has to ask;
    /// none when there is none, and when it is the one that holds the folder.
    std::optional<std::string> remoteVolume(std::string_view name);

private:
    /// A way through folders and links: where it has come to, and what lies ahead, last one first.
    struct Way {
        std::string at = "/";
        std::vector<std::string> ahead;
    };
    enum class Remote { enter, stopBefore };

    /// Finds out what is mounted, and where the folder really lies.
    void begin();
    /// Goes to the end, or as far as it can; gives the mount point before which it stopped.
    std::optional<std::string> walk(Way& way, Remote remote);
    std::optional<std::string> remoteVolumeAt(std::string_view path) const;

    const FileSystem& files_;
    FileUrl folder_;
    Volumes::Source mounted_; ///< empty once it was asked
    std::vector<Volume> volumes_;
    std::vector<std::string> remotes_;         ///< mount points
    std::string place_;                        ///< of the folder, without links
    std::string home_;                         ///< the mount point of its volume
    std::unordered_set<std::string> notLinks_; ///< found on the way
};

} // namespace fennik
