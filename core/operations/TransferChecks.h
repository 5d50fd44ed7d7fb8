#pragma once

#include "core/operations/FolderNode.h"
#include "core/operations/TransferPlaces.h"
#include "core/operations/TransferRequest.h"

#include <string>

/// What has to be known of a pair before anything is done.
namespace fennik::TransferChecks {

enum class Verdict {
    fine,
    samePath, ///< both are one item, whatever its two paths look like
    inside,   ///< the destination lies in the source
};

/// Whether `destination` is written as a path below `source`. Asks no disk.
bool isWrittenInside(const FileUrl& source, const FileUrl& destination);

/// Compares the items themselves too, so that links, bind mounts and names that only look different
/// are seen through. `status` is that of the source, the item of `folder`; `way` leads to the
/// folder that is to hold the destination. Two hard links of one file are two items.
Verdict check(const TransferPair& pair, FolderNode& folder, const FileStatus& status,
              const TransferPlaces::Way& way);

} // namespace fennik::TransferChecks
