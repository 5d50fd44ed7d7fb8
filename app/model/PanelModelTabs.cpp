#include "app/model/CursorPlacement.h"
#include "app/model/PanelModel.h"

#include <utility>
#include <vector>

namespace fennik::app {

void PanelModel::replaceTabs(PanelTabs tabs) {
    shown_.tabs = std::move(tabs);
    emit changed(PanelChange::tabs);
}

void PanelModel::dropTabs(const std::function<bool(const PanelTab&)>& isGone,
                          const std::string& fallback) {
    std::vector<PanelTab> kept;
    std::size_t active = 0;
    for (std::size_t i = 0; i < tabs().size(); ++i) {
        const auto& tab = tabs()[i];
        const bool isActive = i == activeTab();
        if (isActive)
            active = kept.size();
        if ((isActive && hasBegun()) || !isGone(tab)) {
            kept.push_back(tab);
        } else {
            forgetTab(tab.id);
        }
    }
    if (kept.size() == tabs().size())
        return;
    shown_.tabs = kept.empty() ? PanelTabs(fallback) : PanelTabs(std::move(kept), active);
    emit changed(PanelChange::tabs);
}

void PanelModel::forgetTab(const Uuid& id) {
    shown_.tabMarks.erase(id);
    shown_.tabArchives.erase(id);
    shown_.history.forget(id);
}

void PanelModel::leaveTab(Rows rows) {
    if (const auto item = cursorItem())
        activeTabState().cursorName = std::string(item->name);
    shown_.tabMarks[tab().id] = std::exchange(shown_.marks, {});
    if (auto browse = std::exchange(shown_.archive, {}))
        shown_.tabArchives[tab().id] = std::move(*browse);
    stopLoading();
    reload_.cancel();
    watcher_.reset();
    links_.forget();
    shown_.error.reset();
    shown_.revealed.reset();
    if (rows == Rows::clear)
        clearRows();
}

void PanelModel::showTab(std::size_t index, bool isVisit) {
    shown_.tabs.setActive(index);
    shown_.marks = std::exchange(shown_.tabMarks[tab().id], {});
    shown_.tabMarks.erase(tab().id);
    if (auto browse = shown_.tabArchives.extract(tab().id))
        shown_.archive = std::move(browse.mapped());
    auto changes = PanelChange::cursor | PanelChange::tabs | PanelChange::state |
                   PanelChange::marks | PanelChange::sizes | PanelChange::items;
    if (items().empty()) {
        shown_.markTotals = {};
    } else {
        changes |= rebuildFromRaw();
        placeCursor(CursorPlacement::byName(items(), tab().cursorName));
    }
    emit changed(changes);
    auto request = here();
    request.isVisit = isVisit;
    load(std::move(request));
}

void PanelModel::selectTab(std::size_t index) {
    select(index, false);
}

void PanelModel::select(std::size_t index, bool isVisit) {
    if (index >= tabs().size() || index == activeTab())
        return;
    // The rows of the same folder may stay until it has been read again.
    const auto* browse = archiveOfTab(index);
    const auto place = browse != nullptr ? browse->location() : FileUrl(tabs()[index].path);
    const bool isSameFolder = place.path() == location().path() && !error();
    leaveTab(isSameFolder ? Rows::keep : Rows::clear);
    showTab(index, isVisit);
}

void PanelModel::newTab() {
    PanelTab tab{.path = this->tab().path, .sort = this->tab().sort};
    if (const auto item = cursorItem())
        tab.cursorName = std::string(item->name);
    if (archive())
        shown_.tabArchives[tab.id] = *archive();
    shown_.tabs.insertAfterActive(std::move(tab));
    selectTab(activeTab() + 1);
}

void PanelModel::openTab(const std::string& path) {
    for (std::size_t i = 0; i < tabs().size(); ++i) {
        if (tabs()[i].path == path && archiveOfTab(i) == nullptr)
            return select(i, true);
    }
    shown_.tabs.insertAfterActive({.path = path, .sort = tab().sort});
    select(activeTab() + 1, true);
}

void PanelModel::closeTab(std::size_t index) {
    if (tabs().size() < 2 || index >= tabs().size())
        return;
    const auto closed = tabs()[index].id;
    const bool wasActive = index == activeTab();
    if (wasActive)
        leaveTab(Rows::clear);
    shown_.tabs.remove(index);
    forgetTab(closed);
    if (wasActive)
        showTab(activeTab(), false);
    else
        emit changed(PanelChange::tabs);
}

void PanelModel::moveTab(std::size_t from, std::size_t to) {
    if (from >= tabs().size() || to >= tabs().size() || from == to)
        return;
    shown_.tabs.move(from, to);
    emit changed(PanelChange::tabs);
}

void PanelModel::swapWith(PanelModel& other) {
    struct Going {
        std::optional<Request> request;
        NameSet asked; ///< for their sizes
    };
    const auto interrupt = [](PanelModel& panel) {
        Going going;
        if (panel.loading_) {
            going.request = panel.pendingRequest_;
            going.request->isTyped = false; // nobody waits for it on the other side
        }
        going.asked = panel.sizing_.asked();
        panel.stopLoading();
        panel.reload_.cancel();
        panel.watcher_.reset();
        panel.automaticSizes_.reset();
        panel.isStale_ = true; // nobody watches what comes over until it is read again
        panel.links_.forget();
        panel.sizing_.stop();
        return going;
    };
    const auto proceed = [](PanelModel& panel, const Going& going) {
        ++panel.generation_;
        emit panel.changed(PanelChange::items | PanelChange::cursor | PanelChange::tabs |
                           PanelChange::state | PanelChange::marks | PanelChange::sizes);
        if (!panel.error() || going.request)
            panel.load(going.request.value_or(panel.here()));
        std::vector<FolderSizing::Job> jobs;
        for (const auto& name : going.asked)
            jobs.push_back({.name = name});
        panel.sizing_.start({panel.folder(), panel.folder()}, std::move(jobs),
                            FolderSizing::Purpose::asked);
    };
    auto mine = interrupt(*this);
    auto theirs = interrupt(other);
    std::swap(shown_, other.shown_);
    sizing_.swapSizes(other.sizing_);
    proceed(*this, theirs);
    proceed(other, mine);
}

} // namespace fennik::app
