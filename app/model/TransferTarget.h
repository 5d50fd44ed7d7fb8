#pragma once

#include "app/model/Dialog.h"
#include "core/base/FileUrl.h"
#include "core/operations/TransferRequest.h"
#include "core/platform/FileSystem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Where items are to go, found from the text that the user has typed.
namespace fennik::app::TransferTarget {

struct Question {
    TransferKind kind = TransferKind::copy;
    std::vector<FileUrl> sources = {}; ///< at least one, all of one folder
    std::string text = {};             ///< bytes
    FileUrl from = {};                 ///< where relative paths begin
    FileUrl home = {};                 ///< what "~" stands for
    std::int64_t knownBytes = 0;       ///< that have to be stored, at the least
};

struct Answer {
    Outcome outcome = {};
    std::vector<TransferPair> pairs = {}; ///< none where the outcome is a refusal
};

/// An existing folder takes all items under their own names; so does one that does not exist yet,
/// with the levels above it. For a single item, a last component that is no folder is its new name,
/// unless a "/" ends the text. Refused is what would fail for all items: a target inside one of
/// them, no right to write, too little space on another volume, a folder that cannot be reached.
/// What is extracted always goes into a folder. Changes nothing. Waits for the disk; for workers.
Answer resolve(const FileSystem& files, const Question& question);

/// Why nothing can be stored in the folder, as a sentence; none where it can. Waits for the disk.
std::optional<std::string> storingObstacle(const FileSystem& files, const FileUrl& folder);

/// All items under their own names in `folder`.
std::vector<TransferPair> pairsInto(const std::vector<FileUrl>& sources, const FileUrl& folder);

} // namespace fennik::app::TransferTarget
