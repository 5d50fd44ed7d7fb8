#pragma once

#include "core/archives/ArchiveFormat.h"

#include <string>

namespace fennik {

/// How an archive is to be made.
struct PackOptions {
    ArchiveFormat format = ArchiveFormat::zip;
    int level = 6;             ///< 0: stored only; more than 9 counts as 9
    std::string password = {}; ///< empty: none; for ZIP only
    bool skipJunk = true;      ///< what another system leaves behind in folders stays out
};

} // namespace fennik
