#include "core/listing/LinkRoutes.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace fennik {

namespace {

constexpr int mostLinks = 40; // as the system follows them

/// The components of `path`, the last one first, go on top of what lies ahead.
void putAhead(std::vector<std::string>& ahead, std::string_view path) {
    for (auto end = path.size();;) {
        const auto slash = end == 0 ? std::string_view::npos : path.rfind('/', end - 1);
        const auto begin = slash == std::string_view::npos ? 0 : slash + 1;
        if (begin < end)
            ahead.emplace_back(path.substr(begin, end - begin));
        if (slash == std::string_view::npos)
            return;
        end = slash;
    }
}

} // namespace

LinkRoutes::LinkRoutes(std::vector<Volume> volumes)
    : volumes_(std::move(volumes)),
      areAllLocal_(std::ranges::none_of(volumes_, &Volume::isRemote)) {}

std::optional<std::string> LinkRoutes::remoteVolumeAt(std::string_view path,
                                                      std::string_view home) const {
    auto volume = Volumes::containing(path, volumes_);
    if (!volume.isRemote || volume.mountPoint == home)
        return std::nullopt;
    return std::move(volume.mountPoint);
}

std::optional<std::string> LinkRoutes::remoteVolume(const FileSystem& files,
                                                    const FileUrl& link) const {
    if (areAllLocal_)
        return std::nullopt;
    const auto home = Volumes::containing(link.parent().path(), volumes_).mountPoint;
    std::string at = link.parent().path();
    std::vector<std::string> ahead{std::string(link.lastComponent())};
    for (int links = 0; !ahead.empty();) {
        const auto name = std::move(ahead.back());
        ahead.pop_back();
        if (name == ".")
            continue;
        if (name == "..") {
            at = FileUrl(at).parent().path();
            continue;
        }
        auto next = at.ends_with('/') ? at + name : at + "/" + name;
        if (auto remote = remoteVolumeAt(next, home))
            return remote;
        const auto target = files.linkTarget(next);
        if (target) {
            if (++links > mostLinks)
                return std::nullopt;
            if (target->starts_with('/'))
                at = "/";
            putAhead(ahead, *target);
        } else if (target.error().code == EINVAL) { // no link
            at = std::move(next);
        } else {
            return std::nullopt; // nor can the system come any further
        }
    }
    return std::nullopt;
}

} // namespace fennik
