#pragma once

#include "core/base/Date.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

/// A name that is taken where an item is to go: lets the user settle it, and clears the name by
/// moving what has it into the trash.
namespace fennik::NameClash {

/// The item that is to get the name, as the user is told of it.
struct Newcomer {
    FileUrl url = {};
    bool isFolder = false;
    std::int64_t size = 0; ///< bytes; 0 for folders
    Date modified = {};
};

/// The item that has it.
struct Occupant {
    FolderNode::Pointer folder = {};
    std::string name = {};
    FileStatus status = {};
};

/// Why an item must stay where it is, as it stands behind a colon; none where it may go.
using Objection = std::function<std::optional<std::string>(const FileStatus& item)>;

enum class Answer {
    free,      ///< nothing has the name any more
    lookAgain, ///< something else has it by now
    number,    ///< the newcomer gets another name
    skip,      ///< the newcomer is left out
    cancelled, ///< the job is over
    failed,    ///< the ledger has been told why
};

struct Settled {
    Answer answer = Answer::failed;
    /// Where the occupant lies now, if it was moved: then the job has its step too.
    std::optional<FileUrl> displaced = {};
};

Settled settle(TransferLedger& ledger, const Newcomer& newcomer, const Occupant& occupant,
               const Objection& objection);

/// Takes the occupant out of the trash again, after a failure of the newcomer that has left nothing
/// behind. Its step must be the last one of the job.
void bringBack(TransferLedger& ledger, const Occupant& occupant, const FileUrl& displaced);

} // namespace fennik::NameClash
