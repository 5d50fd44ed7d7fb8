#include "core/operations/TransferPlaces.h"

#include "core/base/CzechText.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace fennik {

namespace {

/// Subject to the umask.
constexpr std::uint16_t usualFolderMode = 0777;

} // namespace

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

FolderNode::Pointer TransferPlaces::complete(const Way& way, TransferLedger& ledger) {
    auto folder = way.folder;
    for (const auto& name : way.missing) {
        const auto held = folder->open();
        const auto made =
            held ? (*held)->makeFolder(name, usualFolderMode) : std::unexpected(held.error());
        const bool isNew = made.has_value();
        const bool isThere = isNew || made.error().code == EEXIST;
        const auto node =
            isThere ? FolderNode::below(folder, name)
                    : FolderNode::Result<FolderNode::Pointer>(std::unexpected(made.error()));
        if (!node) {
            ledger.failed("Složku " + quoted(name) + " nejde vytvořit: " + node.error().reason());
            return nullptr;
        }
        folder = *node;
        if (isNew) {
            ledger.context().addStep(UndoSteps::Created{folder->url()});
            made_.push_back(folder);
        }
    }
    last_ = folder;
    return folder;
}

} // namespace fennik
