#include "app/model/LinkTargets.h"

#include "core/listing/LinkRoutes.h"

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
        LinkRoutes routes(services.files, folder, services.volumes);
        NamedTargets targets;
        for (const auto& name : names) {
            const auto url = folder.appending(name);
            const bool isRemote = routes.remoteVolume(name).has_value();
            LinkTarget target{.path = services.files.linkTarget(url.path()).value_or(""),
                              .isBroken =
                                  !isRemote && !services.files.status(url.path(), FollowLinks::yes),
                              .isRemote = isRemote};
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
            target.isBroken |= target.isRemote && broken_.contains(folder_.appending(name).path());
            links_[name].target = std::move(target);
        }
    }
    changed_();
}

void LinkTargets::follow(const FileUrl& folder, FolderOpener::RemoteLinks remote) {
    folder_ = folder;
    for (auto& [_, question] : pending_)
        question.newer.emplace();
    for (auto& [volume, links] : remote) {
        if (const auto found = pending_.find(volume); found != pending_.end())
            found->second.newer = std::move(links);
        else
            ask(volume, std::move(links));
    }
}

void LinkTargets::ask(const std::string& volume, Links links) {
    auto work = [&files = services_.files, folder = folder_, links] {
        std::vector<Answer> answers;
        answers.reserve(links.size());
        for (const auto& link : links) {
            const auto status = files.status(folder.appending(link.name).path(), FollowLinks::yes);
            answers.push_back(
                {.isBroken = !status, .isFolder = status && status->type == FileType::directory});
        }
        return answers;
    };
    pending_.insert_or_assign(volume, Question{.folder = folder_, .links = std::move(links)});
    runThen(services_.disk, services_.main, volume, life_, std::move(work),
            [this, volume](const std::vector<Answer>& answers) { takeAnswers(volume, answers); });
}

void LinkTargets::takeAnswers(const std::string& volume, const std::vector<Answer>& answers) {
    constexpr std::size_t mostKnown = 1000;
    if (known_.size() > mostKnown) {
        known_.clear();
        broken_.clear();
    }
    const auto question = std::move(pending_.extract(volume).mapped());
    const auto& shown = question.current();
    const bool isHere = question.folder == folder_;
    std::size_t answered = 0;
    bool wereMistaken = false;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        const auto& name = question.links[i].name;
        const auto link = std::ranges::find(shown, name, &FolderOpener::RemoteLink::name);
        if (isHere && link == shown.end())
            continue; // it leads elsewhere by now
        const auto path = question.folder.appending(name).path();
        known_[path] = answers[i].isFolder;
        if (answers[i].isBroken)
            broken_.insert(path);
        else
            broken_.erase(path);
        if (!isHere)
            continue;
        ++answered;
        wereMistaken |= answers[i].isFolder != link->isFolder;
        if (const auto known = links_.find(name); known != links_.end())
            if (auto& target = known->second.target; target && target->isRemote)
                target->isBroken = answers[i].isBroken;
    }
    if (answered < shown.size())
        ask(volume, shown);
    changed_();
    if (wereMistaken)
        foldersChanged_();
}

bool LinkTargets::isPending(std::string_view name) const {
    if (known_.contains(folder_.appending(name).path()))
        return false;
    return std::ranges::any_of(pending_, [name](const auto& pending) {
        const auto& shown = pending.second.current();
        return std::ranges::find(shown, name, &FolderOpener::RemoteLink::name) != shown.end();
    });
}

void LinkTargets::forget() {
    links_.clear();
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
