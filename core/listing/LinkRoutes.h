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
    /// `volumes` are those that are mounted; without any, all links count as local. Asks nothing
    /// yet.
    LinkRoutes(const FileSystem& files, FileUrl folder, std::vector<Volume> volumes);

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

    /// Finds out where the folder really lies.
    void locateFolder();
    /// Goes to the end, or as far as it can; gives the mount point before which it stopped.
    std::optional<std::string> walk(Way& way, Remote remote);
    std::optional<std::string> remoteVolumeAt(std::string_view path) const;

    const FileSystem& files_;
    FileUrl folder_;
    std::vector<Volume> volumes_;
    std::vector<std::string> remotes_; ///< mount points
    std::string place_;                ///< of the folder, without links; empty: not known yet
    std::string home_;                 ///< the mount point of its volume
    std::unordered_set<std::string> notLinks_; ///< found on the way
};

} // namespace fennik
