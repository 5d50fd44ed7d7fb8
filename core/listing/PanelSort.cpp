#include "core/listing/PanelSort.h"

#include <algorithm>

namespace fennik {

std::string_view rawValue(SortKey key) {
    switch (key) {
    case SortKey::name:
        return "name";
    case SortKey::ext:
        return "ext";
    case SortKey::size:
        return "size";
    case SortKey::modified:
        return "modified";
    case SortKey::permissions:
        break;
    }
    return "permissions";
}

std::optional<SortKey> sortKeyFromRawValue(std::string_view text) {
    const auto* found = std::ranges::find(allSortKeys, text, rawValue);
    return found == allSortKeys.end() ? std::nullopt : std::optional(*found);
}

PanelSort PanelSort::choosing(SortKey picked) const {
    if (picked == key)
        return {key, !ascending};
    return {picked, picked != SortKey::size && picked != SortKey::modified};
}

} // namespace fennik
