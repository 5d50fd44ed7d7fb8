#include "core/platform/linux/ForeignContent.h"

#include "core/platform/FileSystem.h"
#include "core/platform/OpenFolder.h"

#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace fennik {

bool holdsForeignContent(const FileUrl& folder) {
    const auto user = geteuid();
    if (user == 0)
        return false; // who may remove everything
    std::vector<std::string> left{folder.path()};
    while (!left.empty()) {
        const auto path = std::exchange(left.back(), {});
        left.pop_back();
        const auto status = systemFileSystem().status(path, FollowLinks::no);
        const auto opened = OpenFolder::open(path, FollowLinks::no);
        const auto entries = opened ? opened->entries() : std::unexpected(opened.error());
        const bool isForeign = status && status->owner != user;
        if (isForeign && !entries)
            return true;
        if (!entries || entries->empty())
            continue;
        if (isForeign && faccessat(opened->descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return true;
        for (const auto& entry : *entries)
            if (entry.type == FileType::directory)
                left.push_back(path + "/" + entry.name);
    }
    return false;
}

} // namespace fennik
