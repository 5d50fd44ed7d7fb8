#pragma once

#include "core/archives/EntryStream.h"

#include <memory>
#include <string>

namespace fennik {

/// Opens the file of an archive for reading; never waits for a FIFO's other end.
EntryStream::Result<int> openArchiveFile(const FileUrl& url);

/// Reads an archive through the library, in this process.
class ArchiveReader final : public EntryStream {
public:
    /// Takes the open file `descriptor` over and closes it, also on failure. Where the name says
    /// that it is one compressed file, and it is no collection, it gives one entry, called like the
    /// archive without its last extension.
    static Result<std::unique_ptr<ArchiveReader>>
    open(int descriptor, const ArchiveRequest& request, IsCancelled isCancelled);
    ~ArchiveReader() override;
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    Result<std::optional<StreamEntry>> next() override;
    Result<Block> read() override;
    const ArchiveFacts& facts() const override;

private:
    struct State;
    explicit ArchiveReader(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

/// Opens archives in this process.
class DirectArchives final : public ArchiveOpener {
public:
    EntryStream::Result<std::unique_ptr<EntryStream>> open(const ArchiveRequest& request,
                                                           IsCancelled isCancelled) const override;
};

} // namespace fennik
