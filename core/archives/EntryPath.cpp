#include "core/archives/EntryPath.h"

#include <algorithm>
#include <cstddef>

namespace fennik {

namespace {

constexpr std::size_t longestPath = 4096;
constexpr std::size_t mostFolders = 256;

} // namespace

std::optional<std::string> entryPath(std::string_view written) {
    std::string path;
    path.reserve(std::min(written.size(), longestPath));
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
        if (component == ".." || folders > mostFolders ||
            path.size() + component.size() > longestPath)
            return std::nullopt;
        path += component;
    }
    return path;
}

} // namespace fennik
