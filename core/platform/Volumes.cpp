#include "core/platform/Volumes.h"

namespace fennik::Volumes {

namespace {

bool lies(std::string_view path, std::string_view mountPoint) {
    if (mountPoint == "/")
        return true;
    if (!path.starts_with(mountPoint))
        return false;
    return path.size() == mountPoint.size() || path[mountPoint.size()] == '/';
}

} // namespace

Volume containing(std::string_view path, const std::vector<Volume>& volumes) {
    Volume best{"/", {}, false};
    bool found = false;
    for (const auto& volume : volumes) {
        // Of several mounts on the same place, the last one hides the others.
        if (!lies(path, volume.mountPoint))
            continue;
        if (!found || volume.mountPoint.size() >= best.mountPoint.size())
            best = volume;
        found = true;
    }
    return best;
}

std::unordered_set<std::string> withoutAutomaticSizes(const std::vector<Volume>& volumes,
                                                      const std::string& deviceTree) {
    std::unordered_set<std::string> result;
    for (const auto& volume : volumes) {
        // Of several mounts on the same place, the last one hides the others.
        if (allowsAutomaticSizes(volume, deviceTree))
            result.erase(volume.mountPoint);
        else
            result.insert(volume.mountPoint);
    }
    return result;
}

} // namespace fennik::Volumes
