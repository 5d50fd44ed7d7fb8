#pragma once

#include "app/model/PanelTab.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::app {

/// The tabs of one panel. `active` is the index of one of them; 0 where there are none.
struct SavedPanel {
    std::vector<PanelTab> tabs = {};
    std::size_t active = 0;
};

/// What the panels find again at the next start.
struct SavedState {
    SavedPanel left = {};
    SavedPanel right = {};
    PanelSide activeSide = PanelSide::left;

    /// Whether there is no tab on either side.
    bool isEmpty() const { return left.tabs.empty() && right.tabs.empty(); }

    /// JSON in UTF-8. Paths and the names of cursors stand in their stored text (PathText.h).
    std::string toJson() const;

    /// Reads what `toJson` wrote, by this version or another one. None when `text` is no JSON
    /// object. Otherwise all that is good is kept: a missing or mistaken key leaves the default; a
    /// tab without an absolute path is dropped; an identifier that is bad or used before is
    /// replaced by a new one; the active index stays at its tab, else at the nearest there is.
    static std::optional<SavedState> fromJson(std::string_view text);
};

} // namespace fennik::app
