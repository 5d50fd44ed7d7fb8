#pragma once

#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <string>
#include <utility>
#include <vector>

namespace fennik {

/// An item that was copied and is to go from its first place.
struct MovedCopy {
    FolderNode::Pointer from = {};
    std::string name = {};
    FileStatus source = {}; ///< as it was before it was read
    FolderNode::Pointer to = {};
    std::string newName = {};
    FileStatus copy = {}; ///< as it was when it was complete; of no meaning for a folder

    bool isFolder() const { return source.type == FileType::directory; }
    FileUrl sourceUrl() const { return from->url().appending(name); }
    FileUrl copyUrl() const { return to->url().appending(newName); }
};

/// Takes items that were copied to another volume from their first places. That happens to many at
/// a time, because each waits until its copy is on the disk.
class SourceRemoval {
public:
    enum class Pace {
        inBatches,
        never, ///< they are taken by somebody who removes all of them or none
    };

    SourceRemoval(TransferLedger& ledger, Pace pace) : ledger_(ledger), pace_(pace) {}

    /// `target` is the folder of the copy, held since before that was made.
    void addFile(MovedCopy file, FolderNode::Held target);
    /// Whether everything in the folder was gone through.
    enum class Visit { complete, brokenOff };
    /// A folder goes once it is empty, after the items that were added before.
    void addFolder(MovedCopy folder, Visit visit);
    /// Waits for the disk, and removes what was added. What has changed meanwhile or cannot be
    /// removed stays, and its copy too.
    void flush();

    /// Waits until all copies are on the disk.
    FolderNode::Result<void> sync();
    /// The items in the order in which they can be removed.
    std::vector<MovedCopy> take();
    /// Whether source and copy are what they were, so that the copy is what the source is now.
    static bool isIntact(const MovedCopy& file);
    static FolderNode::Result<void> removeSource(const MovedCopy& item);

private:
    /// Enough for the disk to be worth the wait, and few enough to wait for after a cancellation.
    static constexpr std::size_t mostFiles = 2000;
    static constexpr std::int64_t mostBytes = 64 << 20;

    struct Pending {
        MovedCopy item = {};
        std::size_t pair = 0;
    };

    FolderNode::Result<void> syncEach() const;
    void removeFile(const Pending& file);
    void removeFolder(const Pending& folder);
    void keepBoth(const Pending& item);
    void clear();

    TransferLedger& ledger_;
    Pace pace_;
    std::vector<Pending> pending_;
    /// One folder of each volume that was written to. A failure to write is told to those alone who
    /// had a file open when it happened.
    std::vector<std::pair<std::uint64_t, FolderNode::Held>> volumes_;
    std::size_t files_ = 0;
    std::int64_t bytes_ = 0;
};

} // namespace fennik
