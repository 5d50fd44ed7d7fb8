#pragma once

#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/ArchiveMessages.h"

#include <atomic>

namespace fennik {

/// The helper's side of packing. `isAbandoned`: nobody wants the archive any more.
int packForOthers(const ArchivePacker& packer, const PackRequest& request,
                  const std::atomic<bool>& isAbandoned);

} // namespace fennik
