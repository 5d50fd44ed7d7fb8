#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace fennik {

/// Hashes names of either kind, so that a set or map of strings is searched without making one.
struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const noexcept {
        return std::hash<std::string_view>()(name);
    }
};

/// Names of items.
using NameSet = std::unordered_set<std::string, NameHash, std::equal_to<>>;

} // namespace fennik
