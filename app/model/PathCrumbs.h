#pragma once

#include "core/base/FileUrl.h"

#include <string>
#include <vector>

namespace fennik::app {

/// One step of the way to a folder, as the path bar shows it.
struct PathCrumb {
    std::string title; ///< bytes, as the file system has them
    FileUrl url;
};

/// The way to a folder. It begins at the innermost place that people know by name: their home
/// folder, the volume the folder lies on, or the root.
struct PathCrumbs {
    enum class Start { home, disk };
    Start start = Start::disk;
    std::vector<PathCrumb> crumbs; ///< from the start to the folder itself; never empty

    /// `volumeRoot` is the mount point the folder lies on, "/" for the system's own.
    static PathCrumbs of(const FileUrl& folder, const FileUrl& home, const FileUrl& volumeRoot);
};

} // namespace fennik::app
