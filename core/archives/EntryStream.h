#pragma once

#include "core/archives/ArchiveEntry.h"
#include "core/archives/ArchiveError.h"
#include "core/archives/ArchiveFamily.h"
#include "core/base/FileUrl.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace fennik {

/// What is to be read, and how.
struct ArchiveRequest {
    FileUrl url = {};
    std::string password = {}; ///< empty: none
    /// The character set of names that are not UTF-8, as ICU calls it. Empty: not known yet; such
    /// names are passed on as they are written.
    std::string charset = {};
    /// Paths of the entries whose data is going to be read, each with all below it; none: any. For
    /// an index the list is empty. The data of others may come out empty.
    std::optional<std::vector<std::string>> wanted = {};
};

/// The archive as a whole; complete once its first entry was asked for.
struct ArchiveFacts {
    std::string formatName = {}; ///< as the library calls it; may be empty
    std::uint32_t formatFamily = 0;
    /// Of the file that was opened, by which a later change shows.
    std::int64_t fileSize = 0;
    Date fileModified = {};

    /// One compressed file, and no collection.
    bool isRaw() const { return formatFamily == ArchiveFamily::raw; }
    bool isOfSameFile(const ArchiveFacts& other) const {
        return fileSize == other.fileSize && fileModified == other.fileModified;
    }

    friend bool operator==(const ArchiveFacts&, const ArchiveFacts&) = default;
};

/// An entry as it is met.
struct StreamEntry {
    ArchiveEntry entry = {};
    /// Its path, or that of its hard link's target, is not UTF-8, and was not converted.
    bool hasForeignName = false;
    bool declaresSize = false; ///< `entry.size` is what the archive says
    bool isSpecial = false; ///< a device, a FIFO or a socket: a file of which nothing can be taken
    /// It cannot be taken: its path is too long, too deep, or leads out of the archive.
    /// `entry.path` is then for the eye only.
    bool isRefused = false;
};

/// The entries of one archive in its own order, with their data. Whatever the archive holds, paths
/// of entries that are not refused are as `ArchiveEntry` says. May wait for the disk and for
/// another process; used on one worker.
class EntryStream {
public:
    template <class T>
    using Result = std::expected<T, ArchiveError>;

    struct Block {
        std::int64_t offset = 0; ///< in the entry; what lies between two blocks is zeros
        std::span<const std::byte> bytes = {}; ///< valid until the next call; empty at the end
    };

    virtual ~EntryStream() = default;

    /// None at the end of the archive. What was not read of the entry before is passed over.
    virtual Result<std::optional<StreamEntry>> next() = 0;
    /// More of the data of the current entry. Offsets never go back.
    virtual Result<Block> read() = 0;
    virtual const ArchiveFacts& facts() const = 0;
};

using IsCancelled = std::function<bool()>;

/// Where archives are opened: in this process, or in one that may hang and crash.
class ArchiveOpener {
public:
    virtual ~ArchiveOpener() = default;

    /// `isCancelled` is asked again and again as long as the stream lives, also while it waits;
    /// then everything ends with `cancelled`.
    virtual EntryStream::Result<std::unique_ptr<EntryStream>>
    open(const ArchiveRequest& request, IsCancelled isCancelled) const = 0;
};

} // namespace fennik
