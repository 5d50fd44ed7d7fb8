#pragma once

#include "core/archives/EntryStream.h"
#include "core/archives/FileCompleter.h"
#include "core/archives/FullDisk.h"
#include "core/archives/NamePlacing.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace fennik {

/// Makes a file of one entry of an archive and gets its data, which is right only when it is
/// exactly what the archive says. Nothing is left of a file that fails so.
class EntryWriter {
public:
    using Made = NamePlacing::Made;
    /// A file with all of its data.
    struct Filled {
        FileCompleter::Work work;
        bool mayWait = false;     ///< nothing hangs on how it ends
        std::int64_t missing = 0; ///< of the bytes that the job has counted
    };

    /// `first` is the first data of the entry, which was read from the stream.
    EntryWriter(TransferLedger& ledger, FullDisk& disk, FileCompleter& completer,
                EntryStream& stream, const StreamEntry& entry, const EntryStream::Block& first);

    /// All of its data is at hand before any is written.
    bool isSmall() const { return isSmall_; }

    /// Into the folder. The data is untouched where the name is taken.
    std::expected<Filled, Made> write(const FolderNode& folder, const FolderNode::Held& held,
                                      const std::string& name);

    /// The system cannot remove what is left of a file that has failed.
    static void tellLeftover(TransferLedger& ledger, const FileUrl& file, const PosixError& why);

private:
    using Work = FileCompleter::Work;

    /// Why the data cannot be written to its end.
    struct Failure {
        Made how = Made::failed;
        std::string sentence = {};
    };
    std::optional<Failure> fill(Work& work);
    std::optional<Failure> fillBlock(Work& work, const EntryStream::Block& block);
    OpenFolder::Result<void> put(Work& work, const EntryStream::Block& block) const;
    Failure failure(const std::string& what) const;
    Failure failure(const PosixError& error);
    Failure failure(const ArchiveError& error) const;

    TransferLedger& ledger_;
    FullDisk& disk_;
    FileCompleter& completer_;
    EntryStream& stream_;
    const StreamEntry& entry_;
    EntryStream::Block block_;
    const bool isSmall_;
    bool wasTaken_ = false;    ///< its name, by something that may have to come back
    std::int64_t expected_;    ///< bytes, as the job has counted them
    std::int64_t written_ = 0; ///< or at hand
    std::int64_t end_ = 0;     ///< of the data so far, with its holes
};

} // namespace fennik
