#include "app/model/PathCrumbs.h"

#include <algorithm>

namespace fennik::app {

namespace {

/// Where removable and network volumes are mounted; other mount points are details of the system.
bool isPlaceForVolumes(const FileUrl& mountPoint) {
    const auto& path = mountPoint.path();
    return path.starts_with("/media/") || path.starts_with("/mnt/") ||
           path.starts_with("/run/media/") || path.starts_with("/Volumes/");
}

} // namespace

PathCrumbs PathCrumbs::of(const FileUrl& folder, const FileUrl& home, const FileUrl& volumeRoot) {
    PathCrumbs result;
    const bool onVolume = isPlaceForVolumes(volumeRoot);
    for (auto url = folder;; url = url.parent()) {
        result.crumbs.push_back({std::string(url.lastComponent()), url});
        const bool isHome = url.path() == home.path() && !home.isRoot();
        if (isHome)
            result.start = Start::home;
        if (url.isRoot() || isHome || (onVolume && url.path() == volumeRoot.path()))
            break;
    }
    std::ranges::reverse(result.crumbs);
    return result;
}

} // namespace fennik::app
