#include "core/archives/EntryPath.h"

#include <algorithm>
#include <ranges>

namespace fennik {

std::optional<std::string> entryPath(std::string_view written) {
    std::string path;
    path.reserve(std::min(written.size(), longestEntryPath));
    std::size_t folders = 0;
    for (std::size_t begin = 0; begin < written.size();) {
        const auto end = std::min(written.find('/', begin), written.size());
        const auto component = written.substr(begin, end - begin);
        begin = end + 1;
        if (component.empty() || component == ".")
            continue;
        if (!path.empty()) {
            path += '/';
            ++folders;
        }
        if (component == ".." || folders > mostEntryFolders ||
            path.size() + component.size() > longestEntryPath)
            return std::nullopt;
        path += component;
    }
    return path;
}

bool isEntryPath(std::string_view path) {
    const auto folders = static_cast<std::size_t>(std::ranges::count(path, '/'));
    if (path.empty() || path.size() > longestDecodedPath || folders > mostEntryFolders ||
        path.contains('\0'))
        return false;
    return std::ranges::none_of(std::views::split(path, '/'), [](const auto& component) {
        const std::string_view name(component);
        return name.empty() || name == "." || name == "..";
    });
}

} // namespace fennik
