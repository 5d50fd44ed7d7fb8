#pragma once

#include "core/archives/EntryStream.h"
#include "core/archives/FullDisk.h"
#include "core/archives/NamePlacing.h"
#include "core/operations/FolderNode.h"
#include "core/operations/TransferLedger.h"
#include "core/platform/NewItems.h"

#include <cstdint>
#include <optional>
#include <string>

namespace fennik {

/// Writes the data of one entry of an archive into a new file, and takes it for whole only when it
/// is exactly what the archive says. Nothing is left of a file that fails.
class EntryWriter {
public:
    using Made = NamePlacing::Made;

    /// `first` is the first data of the entry, which was read from the stream.
    EntryWriter(TransferLedger& ledger, FullDisk& disk, EntryStream& stream,
                const StreamEntry& entry, const EntryStream::Block& first);

    /// Into the folder, which is held open. The data is untouched where the name is taken.
    Made write(const FolderNode& folder, const OpenFolder& held, const std::string& name);
    /// Of the file that was written.
    const FileIdentity& identity() const { return identity_; }

private:
    /// Why the data cannot be written to its end.
    struct Failure {
        Made how = Made::failed;
        std::string sentence = {};
    };
    std::optional<Failure> fill(NewFile& file);
    std::optional<Failure> fillBlock(NewFile& file, const EntryStream::Block& block);
    Failure failure(const std::string& what) const;
    Failure failure(const PosixError& error);
    Failure failure(const ArchiveError& error) const;
    void discard(const NewFile& file, const FolderNode& folder, const std::string& name);

    TransferLedger& ledger_;
    FullDisk& disk_;
    EntryStream& stream_;
    const StreamEntry& entry_;
    EntryStream::Block block_;
    FileIdentity identity_ = {};
    std::int64_t expected_; ///< bytes, as the job has counted them
    std::int64_t written_ = 0;
    std::int64_t end_ = 0; ///< of the data so far, with its holes
};

} // namespace fennik
