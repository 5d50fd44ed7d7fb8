#include "core/operations/SourceRemoval.h"

#include "core/base/CzechText.h"

#include <algorithm>
#include <cerrno>
#include <unordered_set>

namespace fennik {

namespace {

/// Up to so many files are synced one by one, so that nobody waits for what other programs write.
constexpr std::size_t fewFiles = 4;

bool isUnsupported(const PosixError& error) {
    return error.code == ENOTSUP || error.code == ENOSYS;
}

bool isNotEmpty(const PosixError& error) {
    return error.code == ENOTEMPTY || error.code == EEXIST;
}

/// Whether an item is still the same one, with the same data.
bool isUnchanged(const FileStatus& before, const FileStatus& now) {
    return before.identity() == now.identity() && before.type == now.type &&
           before.size == now.size && before.modified == now.modified &&
           // Of an item with several names this changes when one of the others goes.
           (before.names != 1 || before.statusChanged == now.statusChanged);
}

} // namespace

void SourceRemoval::addFile(MovedCopy file, FolderNode::Held target) {
    const auto device = file.to->identity().device;
    if (std::ranges::find(volumes_, device, &decltype(volumes_)::value_type::first) ==
        volumes_.end())
        volumes_.emplace_back(device, std::move(target));
    ++files_;
    bytes_ += file.copy.size;
    pending_.push_back({.item = std::move(file), .pair = ledger_.pair()});
    if (pace_ == Pace::inBatches && (files_ >= mostFiles || bytes_ >= mostBytes))
        flush();
}

void SourceRemoval::addFolder(MovedCopy folder, Visit visit) {
    if (pace_ == Pace::inBatches && visit == Visit::brokenOff)
        return;
    pending_.push_back({.item = std::move(folder), .pair = ledger_.pair()});
    if (pace_ == Pace::inBatches && files_ == 0)
        flush();
}

void SourceRemoval::flush() {
    const bool isDurable = files_ == 0 || sync();
    for (auto& pending : pending_) {
        if (pending.item.isFolder())
            removeFolder(pending);
        else if (isDurable)
            removeFile(pending);
        else
            keepBoth(pending);
        // Its folders need not be kept any longer.
        pending = {};
    }
    clear();
}

FolderNode::Result<void> SourceRemoval::sync() {
    if (files_ <= fewFiles)
        return syncEach();
    for (const auto& [device, folder] : volumes_) {
        if (auto synced = folder->syncVolume(); !synced)
            return isUnsupported(synced.error()) ? syncEach() : synced;
    }
    return {};
}

FolderNode::Result<void> SourceRemoval::syncEach() const {
    std::unordered_set<const FolderNode*> synced;
    for (const auto& [item, pair] : pending_) {
        if (!item.isFolder()) {
            const auto folder = item.to->open();
            if (!folder)
                return std::unexpected(folder.error());
            if (auto file = (*folder)->syncFile(item.newName); !file)
                return file;
        }
        // The folders above may be new, too, and their names must not be lost.
        for (auto node = item.to; node && synced.insert(node.get()).second; node = node->parent()) {
            const auto folder = node->open();
            if (!folder)
                return std::unexpected(folder.error());
            if (auto names = (*folder)->sync(); !names)
                return names;
        }
    }
    return {};
}

bool SourceRemoval::isIntact(const MovedCopy& file) {
    const auto from = file.from->open();
    const auto to = file.to->open();
    if (!from || !to)
        return false;
    const auto source = (*from)->status(file.name);
    const auto copy = (*to)->status(file.newName);
    // A source that says to be longer than what could be read of it has not been read whole.
    const bool isWhole = file.source.type != FileType::regular || file.source.size == 0 ||
                         file.source.size == file.copy.size;
    return isWhole && source && copy && isUnchanged(file.source, *source) &&
           copy->identity() == file.copy.identity() && copy->type == file.copy.type &&
           copy->size == file.copy.size && copy->modified == file.copy.modified;
}

FolderNode::Result<void> SourceRemoval::removeSource(const MovedCopy& item) {
    const auto from = item.from->open();
    if (!from)
        return std::unexpected(from.error());
    return item.isFolder() ? (*from)->removeFolder(item.name) : (*from)->removeFile(item.name);
}

void SourceRemoval::removeFile(const Pending& file) {
    if (!isIntact(file.item) || !removeSource(file.item)) {
        keepBoth(file);
        return;
    }
    ledger_.context().addStep(
        UndoSteps::Moved{.from = file.item.sourceUrl(), .to = file.item.copyUrl()});
}

void SourceRemoval::removeFolder(const Pending& folder) {
    const auto removed = removeSource(folder.item);
    if (removed) {
        ledger_.context().addStep(UndoSteps::RemovedEmptyDirectory{folder.item.sourceUrl()});
        return;
    }
    // What is still in it has been told of, or has come meanwhile.
    if (isNotEmpty(removed.error()))
        return;
    const auto node = FolderNode::below(folder.item.from, folder.item.name);
    const auto held = node ? (*node)->open() : std::unexpected(node.error());
    const auto entries = held ? (*held)->entries() : std::unexpected(held.error());
    if (entries && entries->empty())
        ledger_.failed(folder.pair,
                       quoted(folder.item.name) + " se zkopíroval, ale originál nejde odstranit.");
}

void SourceRemoval::keepBoth(const Pending& item) {
    ledger_.context().addStep(UndoSteps::Created{item.item.copyUrl()});
    ledger_.failed(item.pair,
                   quoted(item.item.name) + " se zkopíroval, ale originál nejde odstranit.");
}

std::vector<MovedCopy> SourceRemoval::take() {
    std::vector<MovedCopy> items;
    items.reserve(pending_.size());
    for (auto& pending : pending_)
        items.push_back(std::move(pending.item));
    clear();
    return items;
}

void SourceRemoval::clear() {
    pending_.clear();
    volumes_.clear();
    files_ = 0;
    bytes_ = 0;
}

} // namespace fennik
