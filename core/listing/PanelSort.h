#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace fennik {

enum class SortKey { name, ext, size, modified, permissions };

inline constexpr std::array allSortKeys{SortKey::name, SortKey::ext, SortKey::size,
                                        SortKey::modified, SortKey::permissions};

/// The text that stands for the key in saved state.
std::string_view rawValue(SortKey key);
std::optional<SortKey> sortKeyFromRawValue(std::string_view text);

/// How a tab orders its items.
struct PanelSort {
    SortKey key = SortKey::name;
    bool ascending = true;

    /// The order after the user picks `picked` while this one is in force: the direction turns for
    /// the same key; another key begins ascending, but size and date with the largest and newest.
    PanelSort choosing(SortKey picked) const;

    friend bool operator==(const PanelSort&, const PanelSort&) = default;
};

} // namespace fennik
