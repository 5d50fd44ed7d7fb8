#pragma once

#include "core/platform/OpenFolder.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>

namespace fennik {

enum class Cloning { allowed, forbidden };

/// Asked with 0 before anything is made, and then told of `newBytes` more bytes after every chunk
/// of data. Holes and clones move no bytes and are not told, so the sum may stay below the size.
/// Asked with 0 again where there was nothing to move for a while. Says whether to go on.
enum class CopyStep { goOn, stop };
using CopyProgress = std::function<CopyStep(std::int64_t newBytes)>;

struct CopyFailure {
    enum class Kind {
        failed,
        exists,      ///< the new name is taken; whoever took it is untouched
        stopped,     ///< by the progress
        notCopyable, ///< a device or a socket
    };
    Kind kind = Kind::failed;
    PosixError error = {};
    /// Why the unfinished copy could not be removed; otherwise nothing of it is left.
    std::optional<PosixError> remains = {};
};

/// What was read and what was made of it.
struct CopiedItem {
    /// As it was before the first byte was read. Whatever has been changed in it since shows in a
    /// later status: in size or time of content, or in the time of status alone, which a change of
    /// the number of its names moves as well.
    FileStatus source = {};
    /// As it was when it was complete, but for mode, owner and the time of its status.
    FileStatus copy = {};
};

/// Copies one item that is no folder under a name that must be free: the data with its holes, or
/// the link, or the named pipe; times to the nanosecond, mode, owner where allowed, access lists
/// and extended attributes where the target keeps them. The copy is never more readable than the
/// source on the way. Data is cloned where that is allowed and possible. A chunk is 8 MiB at most,
/// less on slow media. A source that grows meanwhile is copied up to the size it had when opened,
/// one that shrinks up to its end. What was made before a failure is removed; what somebody else
/// has put in its place meanwhile stays. The copy need not be on the disk yet. ESTALE: the source
/// was replaced by something else while it was being opened. `listed` is what its folder said of
/// it: what is no regular file any more is copied as what it is.
std::expected<CopiedItem, CopyFailure> copyItem(const OpenFolder& from, const std::string& name,
                                                FileType listed, const OpenFolder& to,
                                                const std::string& newName, Cloning cloning,
                                                const CopyProgress& progress);

/// Gives `to` the mode, times, owner where allowed, access lists and extended attributes of `from`.
/// Does what it can; the first failure is returned.
OpenFolder::Result<void> copyFolderMetadata(const OpenFolder& from, const OpenFolder& to);

} // namespace fennik
