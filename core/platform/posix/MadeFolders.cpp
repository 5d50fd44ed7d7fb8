#include "core/platform/MadeFolders.h"

#include <cerrno>
#include <ranges>
#include <string>
#include <utility>

namespace fennik {

OpenFolder::Result<MadeFolders> MadeFolders::make(const FileUrl& folder, std::uint16_t mode) {
    std::vector<FileUrl> missing;
    auto existing = OpenFolder::open(folder.path(), FollowLinks::yes);
    for (auto url = folder; !existing && existing.error().code == ENOENT && !url.isRoot();) {
        missing.push_back(url);
        url = url.parent();
        existing = OpenFolder::open(url.path(), FollowLinks::yes);
    }
    if (!existing)
        return std::unexpected(existing.error());
    MadeFolders result(std::move(*existing));
    for (const auto& next : std::views::reverse(missing)) {
        if (const auto done = result.descend(next, mode); !done) {
            result.takeBack();
            return std::unexpected(done.error());
        }
    }
    return result;
}

OpenFolder::Result<void> MadeFolders::descend(const FileUrl& next, std::uint16_t mode) {
    const std::string name(next.lastComponent());
    const auto made = folder_.makeFolder(name, mode);
    const bool isOther = !made && made.error().code == EEXIST;
    if (!made && !isOther)
        return made;
    if (!isOther) {
        const auto status = folder_.status(name);
        if (!status) {
            static_cast<void>(folder_.removeFolder(name));
            return std::unexpected(status.error());
        }
        made_.push_back(next);
        identities_.push_back(status->identity());
    }
    // Somebody may have put a link there meanwhile, which is as good as any way to a folder.
    auto opened =
        isOther ? OpenFolder::open(next.path(), FollowLinks::yes) : folder_.openChild(name);
    if (!opened)
        return std::unexpected(opened.error());
    folder_ = std::move(*opened);
    return {};
}

void MadeFolders::takeBack() const {
    for (std::size_t i = made_.size(); i-- > 0;) {
        const auto parent = OpenFolder::open(made_[i].parent().path(), FollowLinks::yes);
        const std::string name(made_[i].lastComponent());
        const auto status = parent ? parent->status(name) : std::unexpected(parent.error());
        if (!status || status->identity() != identities_[i] || !parent->removeFolder(name))
            return;
    }
}

} // namespace fennik
