#include "core/operations/TransferPlaces.h"

#include <algorithm>
#include <cerrno>

namespace fennik {

FolderNode::Result<FolderNode::Pointer> TransferPlaces::folder(const FileUrl& url) {
    if (last_ && last_->url().path() == url.path())
        return last_;
    auto node = FolderNode::at(folders_, url);
    if (node)
        last_ = *node;
    return node;
}

FolderNode::Result<TransferPlaces::Way> TransferPlaces::wayTo(const FileUrl& url) {
    Way way;
    for (auto place = url;; place = place.parent()) {
        auto node = folder(place);
        if (node) {
            way.folder = *node;
            std::ranges::reverse(way.missing);
            return way;
        }
        // A link that leads nowhere is in the way, and nothing can be made beyond it.
        if (node.error().code != ENOENT || place.isRoot() ||
            systemFileSystem().status(place.path(), FollowLinks::no))
            return std::unexpected(node.error());
        way.missing.emplace_back(place.lastComponent());
    }
}

} // namespace fennik
