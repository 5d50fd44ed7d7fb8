#include "core/archives/ExtractionFolders.h"

#include "core/archives/EntryTraits.h"
#include "core/base/CzechText.h"
#include "core/platform/NewItems.h"

#include <algorithm>
#include <cerrno>
#include <ranges>
#include <utility>
#include <vector>

namespace fennik {

namespace {

/// Nobody else has any business in a folder that is being filled.
constexpr std::uint16_t modeWhileFilling = 0700;
/// Subject to the umask.
constexpr std::uint16_t usualMode = 0777;

} // namespace

ExtractionFolders::ExtractionFolders(TransferLedger& ledger, FullDisk& disk, NamePlacing& placing,
                                     const ArchiveIndex* index, FolderNode::Pointer root,
                                     Newcomer newcomer)
    : ledger_(ledger),
      disk_(disk),
      placing_(placing),
      index_(index),
      newcomer_(std::move(newcomer)) {
    folders_.push_back({.node = std::move(root), .state = State::open});
    top_ = &folders_.front();
    last_ = top_;
}

bool ExtractionFolders::beginIn(const std::string& name) {
    top_ = &child(*top_, name, {}, NamePlacing::Clash::number);
    last_ = top_;
    return top_->state == State::open;
}

ExtractionFolders::Folder& ExtractionFolders::enter(std::string_view path, std::size_t base) {
    const auto below = path.substr(std::min(base, path.size()));
    if (below == lastPath_)
        return *last_;
    auto* folder = top_;
    for (std::size_t begin = 0; begin < below.size() && folder->state == State::open;) {
        const auto end = std::min(below.find('/', begin), below.size());
        folder = &child(*folder, below.substr(begin, end - begin), path.substr(0, base + end));
        begin = end + 1;
    }
    lastPath_ = below;
    last_ = folder;
    return *folder;
}

const ExtractionFolders::Folder& ExtractionFolders::nearest(std::string_view path,
                                                            std::size_t base) const {
    const auto below = path.substr(std::min(base, path.size()));
    if (below == lastPath_)
        return *last_;
    const auto* folder = top_;
    for (std::size_t begin = 0; begin < below.size();) {
        const auto end = std::min(below.find('/', begin), below.size());
        const auto found = folder->children.find(below.substr(begin, end - begin));
        if (found == folder->children.end())
            break;
        folder = found->second;
        begin = end + 1;
    }
    return *folder;
}

ExtractionFolders::Folder& ExtractionFolders::child(Folder& parent, std::string_view name,
                                                    std::string_view path,
                                                    NamePlacing::Clash clash) {
    if (const auto found = parent.children.find(name); found != parent.children.end())
        return *found->second;
    Folder folder;
    if (index_ != nullptr) {
        folder.look = index_->find(path);
        const bool isRecorded = folder.look && !folder.look->implicit &&
                                folder.look->kind == ArchiveEntry::Kind::directory;
        if (!isRecorded)
            folder.look.reset();
    }
    const auto placed =
        placing_.place({.folder = parent.node,
                        .name = std::string(name),
                        .isFolder = true,
                        .clash = clash,
                        .newcomer = [&] { return newcomer_(std::string(path)); }},
                       [&](const FolderNode::Held& held, const std::string& itsName) {
                           return make(folder, parent.node, *held, itsName);
                       });
    switch (placed.outcome) {
    case NamePlacing::Outcome::made:
        folder.state = State::open;
        break;
    case NamePlacing::Outcome::merged:
        if (auto node = FolderNode::below(parent.node, placed.name)) {
            folder.node = std::move(*node);
            folder.state = State::open;
        } else {
            ledger_.failed("Složku " + quoted(placed.name) +
                           " nejde přečíst: " + node.error().reason());
        }
        break;
    case NamePlacing::Outcome::skipped:
        folder.state = State::skipped;
        ledger_.recount({}, {.bytes = 0, .files = 1});
        ledger_.skipped(0);
        break;
    case NamePlacing::Outcome::stopped:
        folder.state = State::stopped;
        break;
    case NamePlacing::Outcome::failed:
        break;
    }
    folders_.push_back(std::move(folder));
    parent.children.emplace(name, &folders_.back());
    return folders_.back();
}

NamePlacing::Made ExtractionFolders::make(Folder& folder, const FolderNode::Pointer& parent,
                                          const OpenFolder& held, const std::string& name) {
    const auto fail = [&](const PosixError& error) {
        disk_.failed(error);
        ledger_.failed("Složku " + quoted(name) + " nejde vytvořit: " + error.reason());
        return NamePlacing::Made::failed;
    };
    const auto made = held.makeFolder(name, folder.look ? modeWhileFilling : usualMode);
    if (!made)
        return made.error().code == EEXIST ? NamePlacing::Made::taken : fail(made.error());
    auto node = FolderNode::below(parent, name);
    if (!node) {
        // It is empty, and so is whatever else it may be that is removed.
        [[maybe_unused]] const auto removed = held.removeFolder(name);
        return fail(node.error());
    }
    folder.node = std::move(*node);
    folder.isNew = true;
    ledger_.context().addStep(UndoSteps::Created{folder.node->url()});
    return NamePlacing::Made::done;
}

void ExtractionFolders::forget(const FileIdentity& folder) {
    for (auto& parent : folders_)
        std::erase_if(parent.children, [&](const auto& child) {
            const auto& node = child.second->node;
            return node && node->identity() == folder;
        });
    lastPath_.clear();
    last_ = top_;
}

void ExtractionFolders::finish() {
    for (auto& folder : folders_ | std::views::reverse) {
        if (folder.isNew && folder.look) {
            const auto held = folder.node->open();
            // A folder without these is complete all the same.
            if (held) [[maybe_unused]]
                const auto set =
                    setModeAndTime(**held, plainMode(*folder.look), folder.look->modified);
        }
        folder.node.reset();
    }
}

} // namespace fennik
