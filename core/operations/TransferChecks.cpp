#include "core/operations/TransferChecks.h"

#include <algorithm>

namespace fennik::TransferChecks {

namespace {

/// Whether one name of the folder is only another spelling of the other: it lists one of the two.
bool isOneName(const OpenFolder& folder, const std::string& name, const std::string& other) {
    const auto entries = folder.entries();
    if (!entries)
        return true; // better to take them for one than to lose the only one
    const auto lists = [&entries](const std::string& wanted) {
        return std::ranges::find(*entries, wanted, &OpenFolder::Entry::name) != entries->end();
    };
    return !(lists(name) && lists(other));
}

bool isSameItem(const TransferPair& pair, FolderNode& folder, const FileStatus& status,
                FolderNode& targetFolder) {
    const std::string name(pair.source.lastComponent());
    const std::string newName(pair.destination.lastComponent());
    const bool sharesFolder = folder.identity() == targetFolder.identity();
    if (sharesFolder && name == newName)
        return true;
    const auto held = targetFolder.open();
    if (!held)
        return false;
    const auto target = (*held)->status(newName);
    if (!target || target->identity() != status.identity())
        return false;
    // A folder or a file with one name that is found in two places is mounted in one of them.
    if (status.type == FileType::directory || status.names == 1)
        return true;
    return sharesFolder && isOneName(**held, name, newName);
}

} // namespace

bool isWrittenInside(const FileUrl& source, const FileUrl& destination) {
    const auto& path = destination.path();
    if (source.isRoot())
        return path != source.path();
    return path.starts_with(source.path()) && path.size() > source.path().size() &&
           path[source.path().size()] == '/';
}

Verdict check(const TransferPair& pair, FolderNode& folder, const FileStatus& status,
              const TransferPlaces::Way& way) {
    if (pair.source.path() == pair.destination.path())
        return Verdict::samePath;
    if (way.missing.empty() && isSameItem(pair, folder, status, *way.folder))
        return Verdict::samePath;
    if (isWrittenInside(pair.source, pair.destination))
        return Verdict::inside;
    if (status.type == FileType::directory && way.folder->isInOrIs(status.identity()))
        return Verdict::inside;
    return Verdict::fine;
}

} // namespace fennik::TransferChecks
