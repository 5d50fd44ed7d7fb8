#pragma once

#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <string>
#include <vector>

namespace fennik {

/// Takes the steps of one entry back, the last one first, whether others fail or not. Returns a
/// message for each that failed; it tells where the item lies now. Waits for the disk.
std::vector<std::string> takeBack(const std::vector<UndoStep>& steps, const TrashProvider& trash);

} // namespace fennik
