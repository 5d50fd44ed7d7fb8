#pragma once

#include "core/platform/FileSystem.h"

#include <sys/stat.h>

namespace fennik {

/// An item to the calls of the system: one that is open, or, with a name, one in an open folder,
/// of which a link is not followed. Both must outlive it.
struct ItemPlace {
    int descriptor = -1;
    const char* name = nullptr;

    bool isOpen() const { return name == nullptr; }
};

/// Whether a call failed only because the target, or this user there, cannot have such a thing.
bool isBeyondTarget(int errorCode);

/// Gives `to`, which nobody else may write to yet, what `from` has besides its data; `seen` is what
/// the system said of `from` before its data was read. Only once everything else is right the mode
/// lets others in. What the target cannot keep is no failure. Goes on after a failure, and returns
/// the first one. `made` becomes what the system says of `to` with its final times; mode, owner and
/// time of status may be those of before.
FileSystem::Result<void> copyMetadata(const ItemPlace& from, const struct stat& seen,
                                      const ItemPlace& to, struct stat& made);

/// The part of it that every system does in its own way: extended attributes and access lists.
/// `mode` is that of the source, and loses what the group is given only together with a list that
/// the target cannot keep.
FileSystem::Result<void> copyAttributes(const ItemPlace& from, const ItemPlace& to, mode_t& mode);

} // namespace fennik
