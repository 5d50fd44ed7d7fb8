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

LinkRoutes::LinkRoutes(const FileSystem& files, FileUrl folder, Volumes::Source mounted)
    : files_(files), folder_(std::move(folder)), mounted_(std::move(mounted)) {}

std::optional<std::string> LinkRoutes::remoteVolume(std::string_view name) {
    if (mounted_)
        begin();
    if (remotes_.empty())
        return std::nullopt;
    Way way{.at = place_, .ahead = {std::string(name)}};
    return walk(way, Remote::stopBefore);
}

void LinkRoutes::begin() {
    volumes_ = std::exchange(mounted_, nullptr)();
    for (const auto& volume : volumes_) {
        if (volume.isRemote)
            remotes_.push_back(volume.mountPoint);
    }
    if (remotes_.empty())
        return;
    Way way;
    putAhead(way.ahead, folder_.path());
    walk(way, Remote::enter);
    place_ = std::move(way.at);
    home_ = Volumes::containing(place_, volumes_).mountPoint;
}

std::optional<std::string> LinkRoutes::walk(Way& way, Remote remote) {
    for (int links = 0; !way.ahead.empty();) {
        const auto name = std::move(way.ahead.back());
        way.ahead.pop_back();
        if (name == ".")
            continue;
        if (name == "..") {
            way.at = FileUrl(way.at).parent().path();
            continue;
        }
        auto next = way.at;
        if (!next.ends_with('/'))
            next += '/';
        next += name;
        if (remote == Remote::stopBefore) {
            if (auto volume = remoteVolumeAt(next))
                return volume;
        }
        if (notLinks_.contains(next)) {
            way.at = std::move(next);
            continue;
        }
        const auto target = files_.linkTarget(next);
        if (target) {
            if (++links > mostLinks)
                return std::nullopt;
            if (target->starts_with('/'))
                way.at = "/";
            putAhead(way.ahead, *target);
        } else if (target.error().code == EINVAL) {
            notLinks_.insert(next);
            way.at = std::move(next);
        } else {
            return std::nullopt; // nor can the system come any further
        }
    }
    return std::nullopt;
}

std::optional<std::string> LinkRoutes::remoteVolumeAt(std::string_view path) const {
    const auto mayHold = [path](const std::string& mountPoint) {
        return path.starts_with(mountPoint);
    };
    if (std::ranges::none_of(remotes_, mayHold))
        return std::nullopt;
    auto volume = Volumes::containing(path, volumes_);
    if (!volume.isRemote || volume.mountPoint == home_)
        return std::nullopt;
    return std::move(volume.mountPoint);
}

} // namespace fennik
