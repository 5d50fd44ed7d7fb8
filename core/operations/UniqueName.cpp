#include "core/operations/UniqueName.h"

#include "core/base/NumberedName.h"

#include <cerrno>
#include <cstddef>

namespace fennik::UniqueName {

namespace {

/// What file systems take for one name, in bytes.
constexpr std::size_t longestName = 255;
/// Some take less, but none less than this.
constexpr std::size_t leastLongestName = 14;

} // namespace

std::string free(std::string_view name, const Examine& examine) {
    auto length = longestName;
    auto candidate = numberedName(name, {}, length);
    std::string number;
    for (std::size_t n = 2;;) {
        const int error = examine(candidate);
        if (error == 0) {
            number = " " + std::to_string(n++);
        } else if (error == ENAMETOOLONG && candidate.size() > leastLongestName) {
            length = candidate.size() - 1;
        } else {
            return candidate;
        }
        candidate = numberedName(name, number, length);
    }
}

std::string free(std::string_view name, const OpenFolder& folder) {
    return free(name, [&folder](const std::string& candidate) {
        const auto status = folder.status(candidate);
        return status ? 0 : status.error().code;
    });
}

FileUrl url(const FileUrl& folder, std::string_view name) {
    const auto freeName = free(name, [&folder](const std::string& candidate) {
        const auto status =
            systemFileSystem().status(folder.appending(candidate).path(), FollowLinks::no);
        return status ? 0 : status.error().code;
    });
    return folder.appending(freeName);
}

} // namespace fennik::UniqueName
