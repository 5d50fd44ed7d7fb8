#include "app/model/TabRestoration.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace fennik::app {

namespace {

constexpr auto patience = std::chrono::seconds(1);

/// How many workers ask for the folders of tabs at the same time.
constexpr std::size_t mostQuestions = 16;

bool isGone(const FileSystem& files, const std::string& path) {
    const auto status = files.status(path, FollowLinks::yes);
    if (status)
        return status->type != FileType::directory;
    return status.error().code == ENOENT || status.error().code == ENOTDIR;
}

} // namespace

TabRestoration::TabRestoration(PanelModel& panel, PanelServices services, FileUrl home)
    : panel_(panel),
      services_(std::move(services)),
      home_(std::move(home)),
      deadline_(services_.delayed) {}

void TabRestoration::start(std::optional<std::string> given, std::string formerPath,
                           bool hasSavedTabs) {
    formerPath_ = std::move(formerPath);
    hasTabs_ = hasSavedTabs || given;
    auto unsure = hasSavedTabs ? panel_.tabs() : std::vector<PanelTab>();
    if (given) {
        if (hasSavedTabs)
            panel_.openTab(*given);
        else
            panel_.replaceTabs(PanelTabs(*given));
        std::erase_if(unsure, [this](const PanelTab& tab) { return tab.id == panel_.tab().id; });
        listTab();
    }
    if (!formerPath_.empty())
        ask({{.path = formerPath_}});
    const auto active = std::ranges::find(unsure, panel_.tab().id, &PanelTab::id);
    if (active != unsure.end()) {
        ask({*active});
        unsure.erase(active);
    }
    const auto share =
        std::max<std::size_t>(1, (unsure.size() + mostQuestions - 1) / mostQuestions);
    for (std::size_t begin = 0; begin < unsure.size(); begin += share) {
        const auto end = std::min(begin + share, unsure.size());
        ask({unsure.begin() + static_cast<std::ptrdiff_t>(begin),
             unsure.begin() + static_cast<std::ptrdiff_t>(end)});
    }
    if (questions_ == 0)
        finish();
    else
        deadline_.schedule(patience, [this] { finish(); });
}

void TabRestoration::ask(std::vector<PanelTab> tabs) {
    ++questions_;
    auto path = tabs.front().path;
    auto work = [&files = services_.files, tabs = std::move(tabs)] {
        std::pair<std::vector<PanelTab>, std::vector<bool>> answer{tabs, {}};
        for (const auto& tab : tabs)
            answer.second.push_back(!isGone(files, tab.path));
        return answer;
    };
    runThen(services_.disk, services_.main, std::move(path), life_, std::move(work),
            [this](const auto& answer) { take(answer.first, answer.second); });
}

void TabRestoration::take(const std::vector<PanelTab>& asked, const std::vector<bool>& exist) {
    --questions_;
    if (!deadline_.isPending())
        return; // too late: what did not answer in time stays
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const auto& tab = asked[i];
        if (tab.path == formerPath_)
            formerPathExists_ = formerPathExists_ || exist[i];
        if (!exist[i])
            gone_.emplace(tab.id, tab.path);
        else if (tab.id == panel_.tab().id)
            listTab();
    }
    if (questions_ == 0)
        finish();
}

void TabRestoration::finish() {
    deadline_.cancel();
    const auto& fallback = formerPathExists_ ? formerPath_ : home_.path();
    const auto isGone = [this](const PanelTab& tab) {
        const auto found = gone_.find(tab.id);
        return found != gone_.end() && found->second == tab.path;
    };
    if (hasTabs_)
        panel_.dropTabs(isGone, fallback);
    else if (!panel_.hasBegun())
        panel_.replaceTabs(PanelTabs(fallback));
    listTab();
}

void TabRestoration::listTab() {
    if (!panel_.hasBegun())
        panel_.refresh();
}

} // namespace fennik::app
