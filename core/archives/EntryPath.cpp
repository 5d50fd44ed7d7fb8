#include "core/archives/EntryPath.h"

#include <algorithm>

namespace fennik {

std::optional<std::string> entryPath(std::string_view written) {
    if (written.size() <= longestEntryPath && isEntryPath(written))
        return std::string(written); // as nearly all are
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
    if (path.size() > longestDecodedPath || path.contains('\0'))
        return false;
    std::size_t folders = 0;
    for (;; ++folders) {
        const auto end = path.find('/');
        const auto component = path.substr(0, end);
        if (component.empty() || component == "." || component == "..")
            return false;
        if (end == std::string_view::npos)
            return folders <= mostEntryFolders;
        path.remove_prefix(end + 1);
    }
}

} // namespace fennik
