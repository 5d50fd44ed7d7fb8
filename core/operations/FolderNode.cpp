#include "core/operations/FolderNode.h"

#include "core/platform/OwnProcess.h"

#include <algorithm>
#include <cerrno>
#include <ranges>
#include <utility>

namespace fennik {

namespace {

/// The folder of the source, that of the target, and what leads to one of them.
constexpr std::size_t leastLimit = 4;
constexpr std::size_t mostLimit = 100;

} // namespace

std::size_t OpenFolders::usualLimit() {
    return OwnProcess::shareOfOpenFiles(5, leastLimit, mostLimit);
}

void OpenFolders::use(FolderNode& node) {
    if (!recent_.empty() && recent_.back() == &node)
        return;
    const auto found = std::ranges::find(recent_.rbegin(), recent_.rend(), &node);
    if (found != recent_.rend()) {
        std::rotate(recent_.rbegin(), found, found + 1);
        return;
    }
    if (recent_.size() >= limit_) {
        recent_.front()->held_.reset();
        recent_.erase(recent_.begin());
    }
    recent_.push_back(&node);
}

void OpenFolders::forget(const FolderNode& node) {
    std::erase(recent_, &node);
}

void OpenFolders::close(FolderNode& node) {
    node.held_.reset();
    forget(node);
}

void OpenFolders::closeAllBut(const FolderNode* node) {
    for (auto* open : recent_) {
        if (open != node)
            open->held_.reset();
    }
    std::erase_if(recent_, [node](const FolderNode* open) { return open != node; });
}

FolderNode::Result<FolderNode::Pointer> FolderNode::at(OpenFolders& folders, const FileUrl& url) {
    auto opened = OpenFolder::open(url.path(), FollowLinks::yes);
    if (!opened && opened.error().isForLackOfDescriptors()) {
        folders.closeAllBut(nullptr);
        opened = OpenFolder::open(url.path(), FollowLinks::yes);
    }
    return made(folders, nullptr, url, std::move(opened));
}

FolderNode::Result<FolderNode::Pointer> FolderNode::below(const Pointer& parent,
                                                          const std::string& name) {
    return made(parent->folders_, parent, parent->url_.appending(name), openedBelow(*parent, name));
}

FolderNode::Result<FolderNode::Pointer> FolderNode::made(OpenFolders& folders, Pointer parent,
                                                         FileUrl url, Result<OpenFolder> opened) {
    if (!opened)
        return std::unexpected(opened.error());
    const auto status = opened->status();
    if (!status)
        return std::unexpected(status.error());
    Pointer node(new FolderNode(folders, std::move(parent), std::move(url), status->identity()));
    node->held_ = std::make_shared<const OpenFolder>(std::move(*opened));
    folders.use(*node);
    return node;
}

FolderNode::~FolderNode() {
    folders_.forget(*this);
    // A chain of folders that nobody else holds would otherwise go by as many nested calls.
    auto parent = std::move(parent_);
    while (parent && parent.use_count() == 1)
        parent = std::move(parent->parent_);
}

FolderNode::Result<OpenFolder> FolderNode::openedBelow(FolderNode& parent,
                                                       const std::string& name) {
    const auto above = parent.open();
    if (!above)
        return std::unexpected(above.error());
    auto opened = (*above)->openChild(name);
    if (!opened && opened.error().isForLackOfDescriptors()) {
        parent.folders_.closeAllBut(&parent);
        opened = (*above)->openChild(name);
    }
    return opened;
}

FolderNode::Result<void> FolderNode::openFrom(Result<OpenFolder> opened) {
    if (!opened)
        return std::unexpected(opened.error());
    const auto status = opened->status();
    if (!status)
        return std::unexpected(status.error());
    if (status->identity() != identity_)
        return std::unexpected(PosixError{ESTALE});
    held_ = std::make_shared<const OpenFolder>(std::move(*opened));
    folders_.use(*this);
    return {};
}

FolderNode::Result<FolderNode::Held> FolderNode::open() {
    if (held_) {
        folders_.use(*this);
        return held_;
    }
    std::vector<FolderNode*> closed;
    for (auto* node = this; node != nullptr && !node->held_; node = node->parent_.get())
        closed.push_back(node);
    for (auto left = closed.size(); left > 0; --left) {
        auto& node = *closed[left - 1];
        auto opened = node.parent_
                          ? openedBelow(*node.parent_, std::string(node.url_.lastComponent()))
                          : OpenFolder::open(node.url_.path(), FollowLinks::yes);
        if (const auto isOpen = node.openFrom(std::move(opened)); !isOpen)
            return std::unexpected(isOpen.error());
        // Those far above are only passed, and are not to crowd out what is in use.
        if (left < closed.size() && left > folders_.limit_ / 4)
            folders_.close(*node.parent_);
    }
    return held_;
}

bool FolderNode::isInOrIs(const FileIdentity& folder) {
    auto* top = this;
    for (; top->parent_; top = top->parent_.get()) {
        if (top->identity_ == folder)
            return true;
    }
    const auto& above = top->foldersAbove();
    return top->identity_ == folder || std::ranges::find(above, folder) != above.end();
}

const std::vector<FileIdentity>& FolderNode::foldersAbove() {
    if (above_)
        return *above_;
    above_.emplace();
    const auto held = open();
    // The root folder is its own parent.
    auto last = identity_;
    for (std::string up = ".."; held; up += "/..") {
        const auto status = (*held)->status(up);
        if (!status || status->identity() == last)
            break;
        last = status->identity();
        above_->push_back(last);
    }
    return *above_;
}

} // namespace fennik
