#pragma once

#include "core/archives/ArchiveIndex.h"
#include "core/archives/EntryStream.h"
#include "core/operations/JobSnapshot.h"
#include "core/operations/OperationContext.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// What is to be taken out of one archive, and where to.
struct Extraction {
    FileUrl archive = {};
    std::string password = {};
    /// As the user has seen it; none: it is read first, and where that ends in damage, what comes
    /// before is taken all the same. The archive must still be the same file.
    std::shared_ptr<const ArchiveIndex> index = {};
    /// Paths of entries, each with all below it; none: everything.
    std::optional<std::vector<std::string>> selection = {};
    FileUrl target = {}; ///< a folder; it is made where it is missing
    /// Everything goes into a folder called like the archive, which may be there already, and gets
    /// a number where something else has the name. Not where the archive holds nothing but one
    /// folder of that name, or is one compressed file.
    bool ownFolder = false;
};

/// Asks the user for the password of an archive, for a reason that `isAboutPassword`; none: the
/// user gives up. Called on the worker; waits.
using AskPassword =
    std::function<std::optional<std::string>(const FileUrl& archive, const ArchiveError& reason)>;

/// Takes entries out of archives, as the work of a job: clashes, progress, pause, cancellation,
/// failures item by item and undo steps go to the context. Nothing is ever written outside the
/// target, whatever an archive says. Selected entries keep the path they have below the folder that
/// holds them. Waits for the disk; used on a worker.
class ArchiveExtractor {
public:
    ArchiveExtractor(const ArchiveOpener& archives, OperationContext& context,
                     AskPassword askPassword);

    /// What they came to, as far as they were reached: one outcome for each selected path, or for
    /// the archive as a whole.
    std::vector<PairOutcome> run(const std::vector<Extraction>& extractions);

private:
    const ArchiveOpener& archives_;
    OperationContext& context_;
    AskPassword askPassword_;
};

} // namespace fennik
