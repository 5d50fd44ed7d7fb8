#pragma once

#include "core/base/FileUrl.h"
#include "core/platform/FileSystem.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>

/// Adds up what a folder holds. Safe on several threads at once.
namespace fennik::FolderSizer {

struct Result {
    std::int64_t bytes = 0;   ///< of data, of all regular files in the tree
    std::int64_t files = 0;   ///< everything but folders
    std::int64_t folders = 0; ///< below the root

    friend bool operator==(const Result&, const Result&) = default;
};

/// Hears what a walk has found so far.
using Progress = std::function<void(const Result&)>;

/// Walks the whole tree below `folder`, packages included, on this thread and, where the tree is
/// large, on a second one. Links below it are not followed. A folder below it that cannot be read,
/// or whose path is longer than the system allows, counts as a folder and adds nothing else, and so
/// does one whose path is in `skipped`.
///
/// Nothing when cancelled or when `folder` itself cannot be read. `isCancelled` and `progress` are
/// called on this thread only, the one every few entries, the other about every 100 ms. A second
/// thread that hangs in a call is not waited for after a cancellation: it is left to itself,
/// touches no more than `files`, and ends when its call returns. `files` therefore has to live as
/// long as the process or such a call.
std::optional<Result> size(const FileSystem& files, const FileUrl& folder,
                           const std::function<bool()>& isCancelled,
                           const std::unordered_set<std::string>& skipped = {},
                           const Progress& progress = {});

} // namespace fennik::FolderSizer
