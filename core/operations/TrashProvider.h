#pragma once

#include "core/base/FileUrl.h"

#include <expected>
#include <string>

namespace fennik {

/// Where things go instead of being destroyed. Calls wait for the disk; safe on several threads.
class TrashProvider {
public:
    virtual ~TrashProvider() = default;

    /// Moves the item into the trash and returns where it lies now. On failure it is where it was,
    /// and the error is the reason, as it stands behind a colon.
    [[nodiscard]] virtual std::expected<FileUrl, std::string> trash(const FileUrl& item) const = 0;
    /// The item that lay at `place` is not there any more, having been taken back: what the trash
    /// has noted of it goes too. What is still noted about a place that is taken stays.
    virtual void forget(const FileUrl& place) const = 0;
};

} // namespace fennik
