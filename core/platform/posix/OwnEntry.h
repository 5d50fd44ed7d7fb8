#pragma once

#include "core/platform/OpenFolder.h"

namespace fennik {

/// Whether the entry is still the item that is open as `descriptor`. Examines both anew, so that
/// one failure does not decide about what is done after another.
OpenFolder::Result<bool> isOwn(const OpenFolder& folder, const std::string& name, int descriptor);

/// Removes a file that the caller made and holds open; what somebody else has put in its place
/// stays. An error: it may be there still.
OpenFolder::Result<void> removeOwnFile(const OpenFolder& folder, const std::string& name,
                                       int descriptor);

} // namespace fennik
