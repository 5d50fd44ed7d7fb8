#include "app/model/LinkTargets.h"

#include <algorithm>

namespace fennik::app {

LinkTargets::LinkTargets(PanelServices services, std::function<void()> changed,
                         std::function<void()> foldersChanged)
    : services_(std::move(services)),
      changed_(std::move(changed)),
      foldersChanged_(std::move(foldersChanged)) {}

const LinkTarget* LinkTargets::find(const std::string& name) const {
    const auto found = links_.find(name);
    if (found == links_.end())
        return nullptr;
    const auto& target = found->second.target;
    return target ? &*target : nullptr;
}

void LinkTargets::want(const FileItems& items, std::size_t firstRow, std::size_t lastRow) {
    std::vector<std::string> names;
    for (auto row = firstRow; row < std::min(lastRow, items.size()); ++row) {
        const auto item = items.view(row);
        if (item.kind != FileKind::symlink)
            continue;
        std::string name(item.name);
        if (!std::exchange(links_[name].asked, true))
            names.push_back(std::move(name));
    }
    if (names.empty())
        return;
    auto work = [services = services_, folder = items.folder(), names = std::move(names)] {
        const LinkRoutes routes(services.volumes());
        NamedTargets targets;
        for (const auto& name : names) {
            const auto url = folder.appending(name);
            const bool isRemote = routes.remoteVolume(services.files, url).has_value();
            LinkTarget target{.path = services.files.linkTarget(url.path()).value_or(""),
                              .isBroken = !isRemote &&
                                          !services.files.status(url.path(), FollowLinks::yes)};
            targets.emplace_back(name, std::move(target));
        }
        return targets;
    };
    ++questions_;
    runThen(
        services_.disk, services_.main, items.folder().path(), life_, std::move(work),
        [this, reading = reading_](NamedTargets targets) { take(reading, std::move(targets)); });
}

void LinkTargets::take(const std::shared_ptr<int>& reading, NamedTargets targets) {
    --questions_;
    if (reading == reading_) {
        for (auto& [name, target] : targets) {
            target.isBroken |= brokenRemotes_.contains(name);
            links_[name].target = std::move(target);
        }
    }
    changed_();
}

void LinkTargets::follow(const FileUrl& folder, FolderOpener::RemoteLinks links) {
    for (auto& [volume, names] : links) {
        if (!followed_.insert(volume).second)
            continue;
        auto work = [&files = services_.files, folder, names = std::move(names)] {
            std::vector<Followed> found;
            for (const auto& name : names) {
                const auto status = files.status(folder.appending(name).path(), FollowLinks::yes);
                found.push_back({.name = name,
                                 .isBroken = !status,
                                 .isFolder = status && status->type == FileType::directory});
            }
            return found;
        };
        auto done = [this, volume](const std::vector<Followed>& found) {
            followed_.erase(volume);
            takeFollowed(found);
        };
        runThen(services_.disk, services_.main, volume, folder_, std::move(work), std::move(done));
    }
}

void LinkTargets::takeFollowed(const std::vector<Followed>& found) {
    const auto put = [](std::unordered_set<std::string>& names, const std::string& name, bool in) {
        return in ? names.insert(name).second : names.erase(name) > 0;
    };
    bool haveFoldersChanged = false;
    for (const auto& link : found) {
        haveFoldersChanged |= put(folders_, link.name, link.isFolder);
        put(brokenRemotes_, link.name, link.isBroken);
        const auto known = links_.find(link.name);
        if (known != links_.end() && known->second.target)
            known->second.target->isBroken = link.isBroken;
    }
    changed_();
    if (haveFoldersChanged)
        foldersChanged_();
}

void LinkTargets::forget() {
    links_.clear();
    folders_.clear();
    brokenRemotes_.clear();
    followed_.clear();
    folder_ = std::make_shared<int>();
    askAgain();
}

void LinkTargets::know(NamedTargets targets) {
    forget();
    for (auto& [name, target] : targets)
        links_[name] = {.target = std::move(target), .asked = true};
}

void LinkTargets::askAgain() {
    reading_ = std::make_shared<int>();
    for (auto& [_, link] : links_)
        link.asked = false;
}

} // namespace fennik::app
