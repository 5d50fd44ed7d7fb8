#include "app/model/CursorPlacement.h"

#include <string_view>
#include <unordered_map>

namespace fennik::app::CursorPlacement {

std::size_t byName(const FileItems& items, const std::optional<std::string>& wanted) {
    return wanted ? items.rowOf(*wanted).value_or(0) : 0;
}

std::size_t afterReload(const FileItems& before, std::size_t row, const FileItems& after) {
    if (row >= before.size())
        return 0;
    if (const auto same = after.rowOf(before.view(row).name))
        return *same;
    std::unordered_map<std::string_view, std::size_t> rows;
    for (std::size_t i = 0; i < after.size(); ++i)
        rows.emplace(after.view(i).name, i);
    for (std::size_t distance = 1; distance < before.size(); ++distance) {
        for (const auto candidate : {row + distance, row - distance}) {
            // A row before the first one wraps round to a number beyond the last.
            if (candidate >= before.size())
                continue;
            if (const auto found = rows.find(before.view(candidate).name); found != rows.end())
                return found->second;
        }
    }
    return 0;
}

} // namespace fennik::app::CursorPlacement
