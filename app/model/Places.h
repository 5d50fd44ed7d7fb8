#pragma once

#include "app/model/Settings.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::app {

/// The folders that the user keeps at hand: favourites, and where they have been of late. Paths are
/// absolute bytes. Read from the settings once, where whatever is no absolute path and every
/// repetition is passed over; written on each change. Main thread only.
class Places {
public:
    static constexpr std::size_t maxRecents = 15;

    /// `settings` outlives the places.
    explicit Places(Settings& settings);

    /// In the order in which they were added.
    const std::vector<std::string>& favorites() const { return favorites_; }
    bool isFavorite(std::string_view path) const;
    /// Adds `path` at the end; false when it was a favourite already.
    bool addFavorite(std::string_view path);
    /// False when it was none.
    bool removeFavorite(std::string_view path);

    /// Newest first, at most `maxRecents`.
    const std::vector<std::string>& recents() const { return recents_; }
    /// Moves or puts `path` to the front.
    void noteRecent(std::string_view path);

private:
    Settings& settings_;
    std::vector<std::string> favorites_;
    std::vector<std::string> recents_;
};

} // namespace fennik::app
