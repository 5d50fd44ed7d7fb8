#pragma once

#include "core/archives/helper/ArchiveHelper.h"

namespace fennik {

/// The helper's side of reading: everything that was asked for, one after the other, as fast as it
/// is taken.
int readForOthers(const HelperWork& work, const ArchiveRequest& request);

} // namespace fennik
