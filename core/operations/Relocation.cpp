#include "core/operations/Relocation.h"

#include "core/base/CzechText.h"
#include "core/operations/DirectContext.h"
#include "core/operations/PairTransfer.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>
#include <vector>

namespace fennik::Relocation {

namespace {

using Copies = std::vector<MovedCopy>;

/// Nothing is to give way to what is moved here.
class NoTrash final : public TrashProvider {
public:
    std::expected<FileUrl, std::string> trash(const FileUrl&) const override {
        return std::unexpected(PosixError{EPERM}.reason());
    }
    void forget(const FileUrl&) const override {}
};

/// Whether entries can be taken out of the folder, as far as that can be told beforehand.
FolderNode::Result<void> checkRemovable(const Copies& copies) {
    std::unordered_set<const FolderNode*> checked;
    for (const auto& copy : copies) {
        if (copy.isFolder() && copy.source.device != copy.from->identity().device)
            return std::unexpected(PosixError{EBUSY}); // something is mounted there
        if (!checked.insert(copy.from.get()).second)
            continue;
        const auto held = copy.from->open();
        if (!held)
            return std::unexpected(held.error());
        if (faccessat((*held)->descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return std::unexpected(PosixError{errno});
    }
    return {};
}

bool areIntact(const Copies& copies) {
    return std::ranges::all_of(copies, [](const MovedCopy& copy) {
        return copy.isFolder() || SourceRemoval::isIntact(copy);
    });
}

/// The number of sources that could be removed, in their order.
std::size_t removeSources(const Copies& copies) {
    const auto stays = std::ranges::find_if(copies, [](const MovedCopy& copy) {
        return (!copy.isFolder() && !SourceRemoval::isIntact(copy)) ||
               !SourceRemoval::removeSource(copy);
    });
    return static_cast<std::size_t>(stays - copies.begin());
}

/// What a sentence on the item says of it.
std::string reasonIn(const std::string& sentence, const FileUrl& item) {
    const std::string_view rest(sentence);
    const auto name = quoted(item.lastComponent());
    for (const auto& beginning : {name + ": ", name + " "}) {
        if (rest.starts_with(beginning))
            return std::string(rest.substr(beginning.size()));
    }
    return sentence;
}

/// Copies what was removed already to where it was. True when all of it is there again, and on the
/// disk.
bool putBack(std::span<const MovedCopy> removed) {
    const NoTrash trash;
    DirectContext context(TransferKind::move, trash);
    TransferLedger ledger(context, 1, {}, TransferLedger::OnFailure::stop);
    SourceRemoval removal(ledger, SourceRemoval::Pace::never);
    TransferWalk walk(ledger, removal);
    std::unordered_set<std::string> removedFolders;
    for (const auto& item : removed) {
        if (item.isFolder())
            removedFolders.insert(item.sourceUrl().path());
    }
    for (const auto& item : removed) {
        // With its folder it comes back too.
        if (removedFolders.contains(item.from->url().path()))
            continue;
        const auto to = item.to->open();
        const auto status = to ? (*to)->status(item.newName) : std::unexpected(to.error());
        if (!status)
            return false;
        walk.run({.from = item.to,
                  .name = item.newName,
                  .type = status->type,
                  .to = item.from,
                  .newName = item.name,
                  .clash = TransferWalk::Clash::fail},
                 *status);
    }
    return context.errors().empty() && !context.isCancelled() && removal.sync();
}

/// Removes a copy, if it still is the one that was made here.
void removeCopy(const MovedCopy& copy, const FolderNode::Pointer& targetFolder) {
    const auto held = copy.to->open();
    if (!held)
        return;
    const auto status = (*held)->status(copy.newName);
    if (!status || (!copy.isFolder() && status->identity() != copy.copy.identity()))
        return;
    const auto remove = [&] {
        return copy.isFolder() ? (*held)->removeFolder(copy.newName)
                               : (*held)->removeFile(copy.newName);
    };
    // A folder made here may have got a mode that forbids it.
    if (!remove() && copy.to != targetFolder && fchmod((*held)->descriptor(), S_IRWXU) == 0)
        static_cast<void>(remove());
}

} // namespace

std::expected<void, std::string> move(const FileUrl& from, const FileUrl& to) {
    const NoTrash trash;
    DirectContext context(TransferKind::move, trash);
    OpenFolders folders;
    TransferLedger ledger(context, 1, {}, TransferLedger::OnFailure::stop);
    SourceRemoval removal(ledger, SourceRemoval::Pace::never);
    PairTransfer transfer(folders, ledger, removal, PairTransfer::Clash::fail);
    transfer.run({.source = from, .destination = to});

    auto synced = removal.sync();
    const auto copies = removal.take();
    if (context.errors().empty() && copies.empty())
        return {}; // a rename was enough
    std::string reason;
    if (!context.errors().empty()) {
        reason = reasonIn(context.errors().front(), from);
    } else {
        if (synced)
            synced = checkRemovable(copies);
        if (!synced) {
            reason = synced.error().reason();
        } else {
            const auto removed = areIntact(copies) ? removeSources(copies) : 0;
            if (removed == copies.size())
                return {};
            reason = "originál nejde odstranit.";
            if (!putBack(std::span(copies).first(removed)))
                return std::unexpected(reason);
        }
    }
    const auto targetFolder = transfer.targetFolder();
    for (const auto& copy : copies)
        removeCopy(copy, targetFolder);
    for (const auto& folder : transfer.madeFolders() | std::views::reverse) {
        const auto above = folder->parent()->open();
        if (above)
            static_cast<void>((*above)->removeFolder(std::string(folder->url().lastComponent())));
    }
    return std::unexpected(reason);
}

} // namespace fennik::Relocation
