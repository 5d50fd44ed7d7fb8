#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/OpenFolder.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace fennik {

/// A folder held open, together with those on its path that had to be made for it.
class MadeFolders {
public:
    /// Links on the way are followed. On failure none of the folders it made is left.
    static OpenFolder::Result<MadeFolders> make(const FileUrl& folder, std::uint16_t mode = 0777);

    const OpenFolder& folder() const { return folder_; }
    /// Those that were missing, the outermost first.
    const std::vector<FileUrl>& made() const { return made_; }
    /// Removes those that were made, as far as they are still the same and empty.
    void takeBack() const;

private:
    explicit MadeFolders(OpenFolder folder) : folder_(std::move(folder)) {}
    OpenFolder::Result<void> descend(const FileUrl& next, std::uint16_t mode);

    OpenFolder folder_;
    std::vector<FileUrl> made_ = {};
    std::vector<FileIdentity> identities_ = {}; ///< of `made_`
};

} // namespace fennik
