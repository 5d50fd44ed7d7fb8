#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/FileSystem.h"
#include "core/platform/Volumes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// Tells which links lead to a volume that may not answer, without asking such a volume: links are
/// read one by one, on local volumes only. Immutable; waits for local disks.
class LinkRoutes {
public:
    /// `volumes` are those that are mounted; without any, all links count as local.
    explicit LinkRoutes(std::vector<Volume> volumes = {});

    /// The mount point of the remote volume that somebody who follows `link` has to ask; none when
    /// there is none, and when it is the one that holds the link, which answers anyway.
    std::optional<std::string> remoteVolume(const FileSystem& files, const FileUrl& link) const;

private:
    /// Where `path` would ask; none for a local volume and the one called `home`.
    std::optional<std::string> remoteVolumeAt(std::string_view path, std::string_view home) const;

    std::vector<Volume> volumes_;
    bool areAllLocal_;
};

} // namespace fennik
