#include "app/model/PanelTabs.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

PanelTabs::PanelTabs(std::string path) : tabs_(1) {
    tabs_.front().path = std::move(path);
}

PanelTabs::PanelTabs(std::vector<PanelTab> tabs, std::size_t active)
    : tabs_(std::move(tabs)), active_(std::min(active, tabs_.size() - 1)) {}

void PanelTabs::insertAfterActive(PanelTab tab) {
    tabs_.insert(tabs_.begin() + static_cast<std::ptrdiff_t>(active_) + 1, std::move(tab));
}

std::size_t PanelTabs::neighbour(int step) const {
    const auto count = static_cast<std::ptrdiff_t>(tabs_.size());
    const auto index = static_cast<std::ptrdiff_t>(active_) + step;
    return static_cast<std::size_t>((index % count + count) % count);
}

void PanelTabs::remove(std::size_t index) {
    tabs_.erase(tabs_.begin() + static_cast<std::ptrdiff_t>(index));
    if (index < active_)
        --active_;
    active_ = std::min(active_, tabs_.size() - 1);
}

void PanelTabs::move(std::size_t from, std::size_t to) {
    const auto activeId = active().id;
    auto tab = std::move(tabs_[from]);
    tabs_.erase(tabs_.begin() + static_cast<std::ptrdiff_t>(from));
    tabs_.insert(tabs_.begin() + static_cast<std::ptrdiff_t>(to), std::move(tab));
    const auto found = std::ranges::find(tabs_, activeId, &PanelTab::id);
    active_ = static_cast<std::size_t>(found - tabs_.begin());
}

} // namespace fennik::app
