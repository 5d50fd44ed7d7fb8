#pragma once

#include "core/operations/Conflict.h"
#include "core/operations/FolderNode.h"
#include "core/operations/SourceRemoval.h"
#include "core/operations/TransferCount.h"
#include "core/operations/TransferLedger.h"
#include "core/platform/ItemCopy.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace fennik {

/// Copies or moves items with everything in them. Folders deep in a tree are kept on a stack of its
/// own, and reached from the ones above them that are held; no path is looked up a second time.
class TransferWalk {
public:
    /// What is done where the name of an item is taken.
    enum class Clash {
        ask,
        number, ///< it gets the next free name
        fail,
    };
    struct Item {
        FolderNode::Pointer from = {};
        std::string name = {};
        FileType type = FileType::other;
        FolderNode::Pointer to = {};
        std::string newName = {};
        Clash clash = Clash::ask;
    };

    TransferWalk(TransferLedger& ledger, SourceRemoval& removal)
        : context_(ledger.context()), ledger_(ledger), removal_(removal) {}

    /// `status` is that of the item. Ends with the tree of the item, or when the job is stopped.
    void run(Item item, const FileStatus& status);
    /// Whether there is more to do: the job has not been stopped. Waits while it is paused.
    bool goesOn();
    bool isStopped() const { return isStopped_; }

private:
    /// A folder whose entries are being transferred.
    struct Level {
        Item folder = {};
        FolderNode::Pointer source = {};
        FolderNode::Pointer target = {};
        std::vector<OpenFolder::Entry> entries = {};
        std::size_t next = 0;
        bool isNew = false; ///< the target was made here, and so nothing is in it
        bool mayRename = true;
        PairCount::Extent extent = PairCount::Extent::inFull; ///< of the entries
    };
    /// One item on its way to its place.
    struct Attempt {
        Item item = {};
        std::string name = {}; ///< the one it gets, once that is known
        std::optional<FileStatus> status = {};
        bool looksFirst = false; ///< something may have the name
        bool mayRename = true;
        PairCount::Extent extent = PairCount::Extent::inFull;
        /// Where the item lies whose place this one takes.
        std::optional<FileUrl> displaced = {};
    };
    /// What came of putting an item under a name that seemed free.
    enum class Placing {
        done,
        taken, ///< somebody else was faster
        failed,
    };
    /// What is to become of an item whose name may be taken.
    enum class Answer {
        place,     ///< go on: the name is free now, or another one is to be found
        lookAgain, ///< something else lies there by now
        finished,
    };

    bool isMove() const { return context_.kind() == TransferKind::move; }
    void transferNext();
    void transfer(Attempt attempt);

    Answer answer(Attempt& attempt);
    Answer ask(Attempt& attempt, const FileStatus& source, const FileStatus& target);
    void skip(const Attempt& attempt, const FileStatus& source);
    void merge(const Attempt& attempt);

    Placing place(Attempt& attempt);
    /// None where it has to be copied.
    std::optional<Placing> rename(Attempt& attempt);
    Placing copyFile(const Attempt& attempt);
    Placing failCopy(const Attempt& attempt, const OpenFolder& from, const CopyFailure& failure,
                     std::int64_t written);
    Placing enterNewFolder(const Attempt& attempt);
    /// The folder of the item with its entries, unless that fails or the target lies in it.
    std::optional<Level> read(const Attempt& attempt);
    void leave(SourceRemoval::Visit visit);
    /// Takes what was displaced out of the trash again.
    void bringBack(const Attempt& attempt);

    void failReading(const std::string& name, const PosixError& error);
    void failInsideItself(const std::string& name);

    OperationContext& context_;
    TransferLedger& ledger_;
    SourceRemoval& removal_;
    std::vector<Level> levels_;
    bool isStopped_ = false;
};

} // namespace fennik
