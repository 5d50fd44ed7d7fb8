#include "core/base/Uuid.h"
#include "core/platform/OpenFolder.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/OwnEntry.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/VolumeCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik {

namespace {

using Done = OpenFolder::Result<void>;

/// An entry that is to get another name, in the same folder or another one.
struct Move {
    const OpenFolder& from;
    const std::string& name;
    const OpenFolder& to;
    const std::string& newName;

    /// Replaces what has the new name.
    Done rename() const {
        if (renameat(from.descriptor(), name.c_str(), to.descriptor(), newName.c_str()) != 0)
            return lastError();
        return {};
    }
};

Done failure(int code) {
    return std::unexpected(PosixError{code});
}

bool meansUnknownCall(int code) {
    return code == EINVAL || code == ENOSYS || code == EOPNOTSUPP;
}

bool meansNoHardLinks(int code) {
    return meansUnknownCall(code) || code == EPERM || code == EMLINK;
}

/// Whether the folder is that item or lies below it, whatever way leads there.
OpenFolder::Result<bool> liesWithin(const OpenFolder& folder, const FileIdentity& item) {
    std::string path = ".";
    FileIdentity below;
    for (;;) {
        const auto status = statusAt(folder.descriptor(), path);
        if (!status)
            return std::unexpected(status.error());
        if (status->identity() == item)
            return true;
        if (status->identity() == below) // the root is its own parent
            return false;
        below = status->identity();
        path += "/..";
    }
}

/// Takes away the new name of an item that could not lose the old one.
void unlinkAgain(const Move& move, const FileIdentity& item, const FileIdentity& linked) {
    const auto atOldName = move.from.status(move.name);
    if (!atOldName || atOldName->identity() != item)
        return; // the new name may be the only one left
    const auto atNewName = move.to.status(move.newName);
    if (atNewName && atNewName->identity() == linked) [[maybe_unused]]
        const auto removed = move.to.removeFile(move.newName);
}

Done moveByLink(const Move& move, const FileIdentity& item) {
    if (linkat(move.from.descriptor(), move.name.c_str(), move.to.descriptor(),
               move.newName.c_str(), 0) != 0)
        return lastError();
    // Asked for and not taken over: some file systems number the names of an item, not the item.
    const auto linked = move.to.status(move.newName);
    const auto left = move.from.status(move.name);
    if (left && left->identity() != item)
        return {}; // somebody has put something else there, which is not ours to remove
    auto removed = left ? move.from.removeFile(move.name) : failure(left.error().code);
    if (removed || removed.error().code == ENOENT)
        return {};
    unlinkAgain(move, item, linked ? linked->identity() : item);
    return removed;
}

Done moveOverOwnFile(const Move& move) {
    const Descriptor own(retried([&move] {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        return openat(move.to.descriptor(), move.newName.c_str(), flags, 0600);
    }));
    if (own.number() < 0)
        return lastError();
    const auto made = statusOf(own.number());
    const auto stillOwn = isOwn(move.to, move.newName, own.number());
    if (stillOwn && made && (!*stillOwn || made->size != 0))
        return failure(EEXIST); // somebody else's, or with somebody's data already
    auto moved = stillOwn && made ? move.rename()
                                  : failure((stillOwn ? made.error() : stillOwn.error()).code);
    if (!moved)
        static_cast<void>(removeOwnFile(move.to, move.newName, own.number()));
    return moved;
}

Done moveOverOwnFolder(const Move& move) {
    if (auto made = move.to.makeFolder(move.newName, 0700); !made)
        return made;
    const auto own = move.to.openChild(move.newName);
    const auto stillOwn = own ? isOwn(move.to, move.newName, own->descriptor())
                              : OpenFolder::Result<bool>(std::unexpected(own.error()));
    if (stillOwn && !*stillOwn)
        return failure(EEXIST);
    auto moved = stillOwn ? move.rename() : failure(stillOwn.error().code);
    if (moved)
        return moved;
    // No folder but an empty one goes, neither here nor by the rename.
    [[maybe_unused]] const auto removed = move.to.removeFolder(move.newName);
    const int code = moved.error().code;
    const bool isTaken = code == ENOTEMPTY || code == EEXIST || code == ENOTDIR;
    return isTaken ? failure(EEXIST) : moved;
}

Done moveStepByStep(const Move& move) {
    const auto item = move.from.status(move.name);
    if (!item)
        return failure(item.error().code);
    if (item->type == FileType::directory) {
        // What says that the call is unknown also says that a folder is to go into itself.
        const auto isInside = liesWithin(move.to, item->identity());
        if (!isInside)
            return failure(isInside.error().code);
        return *isInside ? failure(EINVAL) : moveOverOwnFolder(move);
    }
    auto moved = moveByLink(move, item->identity());
    if (!moved && meansNoHardLinks(moved.error().code))
        return moveOverOwnFile(move);
    return moved;
}

OpenFolder::Result<std::vector<std::string>>
listed(const OpenFolder& folder, const std::string& name, const std::string& newName) {
    const auto entries = folder.entries();
    if (!entries)
        return std::unexpected(entries.error());
    std::vector<std::string> names;
    for (const auto& entry : *entries)
        if (entry.name == name || entry.name == newName)
            names.push_back(entry.name);
    return names;
}

/// For systems to which a rename between two names of one item is nothing to be done.
Done moveByThirdName(const OpenFolder& folder, const std::string& name,
                     const std::string& newName) {
    const auto between = ".fennik-renamed-" + Uuid::random().text();
    if (auto moved = renameExclusively(folder, name, folder, between); !moved)
        return moved;
    auto moved = renameExclusively(folder, between, folder, newName);
    if (!moved) {
        const auto& wayBack = name;
        [[maybe_unused]] const auto returned = renameExclusively(folder, between, folder, wayBack);
    }
    return moved;
}

} // namespace

Done renameExclusively(const OpenFolder& from, const std::string& name, const OpenFolder& to,
                       const std::string& newName) {
    auto renamed = renameWhereSupported(from, name, to, newName);
    if (!renamed && meansUnknownCall(renamed.error().code))
        return moveStepByStep({from, name, to, newName});
    return renamed;
}

Done renameWithinCase(const OpenFolder& folder, const std::string& name,
                      const std::string& newName) {
    auto renamed = renameExclusively(folder, name, folder, newName);
    if (renamed || renamed.error().code != EEXIST)
        return renamed;
    const auto item = folder.status(name);
    const auto other = folder.status(newName);
    if (!item || !other)
        return failure((item ? other : item).error().code);
    if (item->identity() != other->identity())
        return failure(EEXIST);
    const auto before = listed(folder, name, newName);
    if (!before)
        return failure(before.error().code);
    if (before->size() != 1)
        return failure(EEXIST);
    if (renamed = Move{folder, name, folder, newName}.rename(); !renamed)
        return renamed;
    const auto after = listed(folder, name, newName);
    if (!after)
        return failure(after.error().code);
    if (*after != std::vector{newName})
        return moveByThirdName(folder, name, newName);
    return {};
}

} // namespace fennik
