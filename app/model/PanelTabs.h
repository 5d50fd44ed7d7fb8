#pragma once

#include "app/model/PanelTab.h"

#include <cstddef>
#include <string>
#include <vector>

namespace fennik::app {

/// The tabs of a panel, at least one, and which of them is active.
class PanelTabs {
public:
    explicit PanelTabs(std::string path);
    /// `tabs` must not be empty; an index beyond them means the last one.
    PanelTabs(std::vector<PanelTab> tabs, std::size_t active);

    const std::vector<PanelTab>& all() const { return tabs_; }
    std::size_t count() const { return tabs_.size(); }
    std::size_t activeIndex() const { return active_; }
    PanelTab& active() { return tabs_[active_]; }
    const PanelTab& active() const { return tabs_[active_]; }

    void setActive(std::size_t index) { active_ = index; }
    /// Behind the active tab, which stays active.
    void insertAfterActive(PanelTab tab);
    /// The index `step` tabs further, round the ends.
    std::size_t neighbour(int step) const;
    /// Takes a tab out. When it was the active one, the tab in its place is active now (the last
    /// one if it was the last); otherwise the active tab stays so. The last tab must not be taken.
    void remove(std::size_t index);
    /// Puts the tab at `from` where `to` is; the active tab stays so.
    void move(std::size_t from, std::size_t to);

private:
    std::vector<PanelTab> tabs_;
    std::size_t active_ = 0;
};

} // namespace fennik::app
