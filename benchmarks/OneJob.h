#pragma once

#include "core/operations/TransferEngine.h"

namespace fennik {

/// Runs one job through the whole queue, counting, snapshots and undo steps included; what it
/// replaces goes to `trash`. Says whether it has ended without any error, and prints those it had.
bool runOneJob(TransferRequest request, const FileUrl& trash, TransferEngine::Body body = {});

} // namespace fennik
