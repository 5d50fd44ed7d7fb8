#pragma once

#include <QString>

#include <span>
#include <string_view>

/// The line icons of the actions, which name their symbols by words of their own. Safe on any
/// thread.
namespace fennik::ui::ActionIcons {

struct Entry {
    std::string_view symbol = {};
    std::string_view icon = {}; ///< for `Icons::line`
};

/// Every symbol, by name.
std::span<const Entry> all();

/// The icon for `Icons::line`; empty for an unknown symbol.
QString iconOf(std::string_view symbol);

} // namespace fennik::ui::ActionIcons
