#include "app/model/Places.h"

#include "core/base/PathText.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace fennik::app {

namespace {

using Paths = std::vector<std::string>;

Paths read(const Settings& settings, const SettingKey<Paths>& key) {
    Paths paths;
    std::unordered_set<std::string> seen;
    for (const auto& text : settings.get(key))
        if (auto path = pathFromStored(text); path && seen.insert(*path).second)
            paths.push_back(std::move(*path));
    return paths;
}

void write(Settings& settings, const SettingKey<Paths>& key, const Paths& paths) {
    Paths texts;
    texts.reserve(paths.size());
    std::ranges::transform(paths, std::back_inserter(texts), storedPath);
    settings.set(key, std::move(texts));
}

} // namespace

Places::Places(Settings& settings)
    : settings_(settings),
      favorites_(read(settings, SettingKeys::favorites)),
      recents_(read(settings, SettingKeys::recents)) {
    recents_.resize(std::min(recents_.size(), maxRecents));
}

bool Places::isFavorite(std::string_view path) const {
    return std::ranges::find(favorites_, path) != favorites_.end();
}

bool Places::addFavorite(std::string_view path) {
    if (isFavorite(path))
        return false;
    favorites_.emplace_back(path);
    write(settings_, SettingKeys::favorites, favorites_);
    return true;
}

bool Places::removeFavorite(std::string_view path) {
    if (std::erase(favorites_, path) == 0)
        return false;
    write(settings_, SettingKeys::favorites, favorites_);
    return true;
}

void Places::noteRecent(std::string_view path) {
    if (!recents_.empty() && recents_.front() == path)
        return;
    const std::string newest(path); // `path` may be one of the list
    std::erase(recents_, newest);
    recents_.insert(recents_.begin(), newest);
    recents_.resize(std::min(recents_.size(), maxRecents));
    write(settings_, SettingKeys::recents, recents_);
}

} // namespace fennik::app
