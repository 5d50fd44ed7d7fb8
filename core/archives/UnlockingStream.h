#pragma once

#include "core/archives/ArchiveExtractor.h"
#include "core/archives/EntryStream.h"
#include "core/operations/OperationContext.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace fennik {

/// The entries of an archive that is opened when its first entry is asked for. Where a password is
/// missing or wrong the user is asked, and then everything goes on from the same entry; when he
/// gives up, the job is cancelled. Only one kind of archive can be unlocked; others end with an
/// error that names them.
class UnlockingStream final : public EntryStream {
public:
    /// All but the request outlives this.
    UnlockingStream(const ArchiveOpener& archives, OperationContext& context,
                    const AskPassword& askPassword, ArchiveRequest request);

    Result<std::optional<StreamEntry>> next() override;
    /// Asks for the first data of an entry alone.
    Result<Block> read() override;
    const ArchiveFacts& facts() const override { return facts_; }

    const std::string& password() const { return request_.password; }

private:
    Result<std::optional<StreamEntry>> nextOnce();
    Result<void> open();
    /// Opens the archive with another password, where the user knows one.
    Result<void> unlock(const ArchiveError& error);
    /// To the entry at which the archive had been left.
    Result<void> catchUp();

    const ArchiveOpener& archives_;
    OperationContext& context_;
    const AskPassword& askPassword_;
    ArchiveRequest request_;
    std::unique_ptr<EntryStream> stream_ = {};
    ArchiveFacts facts_ = {};
    std::int64_t entries_ = 0; ///< that were met
    bool hasReadData_ = false; ///< of the last one
};

} // namespace fennik
