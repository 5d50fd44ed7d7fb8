#pragma once

#include "core/archives/EntryStream.h"

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// All entries of an archive as a tree of folders. Read once, never changed, and safe on any
/// thread.
class ArchiveIndex {
public:
    /// Reads every header. Where names are not UTF-8, their character set is found from all of
    /// them, and then is that of `charset`.
    static EntryStream::Result<std::shared_ptr<const ArchiveIndex>> read(EntryStream& stream,
                                                                         const FileUrl& url);
    ~ArchiveIndex();

    const FileUrl& url() const;
    const ArchiveFacts& facts() const;
    /// The character set of names that were not UTF-8; empty where all were.
    const std::string& charset() const;

    /// None where there is no such entry. The root has no entry.
    std::optional<ArchiveEntry> find(std::string_view path) const;
    /// Names of what lies in a folder, each once; "" is the root. Empty for what is no folder.
    std::vector<std::string_view> children(std::string_view folder) const;
    /// Bytes of all files below a folder; "" is the root.
    std::int64_t folderSize(std::string_view folder) const;

    bool hasEncryptedEntries() const;
    std::int64_t fileCount() const;
    std::int64_t totalSize() const; ///< of the files, in bytes; saturates
    /// Entries that are not in the index, as their paths cannot be taken.
    std::int64_t refusedCount() const;
    bool isZip() const;
    /// "ZIP", "7z", "tar.gz": what the panel calls the format.
    std::string formatLabel() const;

private:
    struct Tree;
    explicit ArchiveIndex(std::unique_ptr<const Tree> tree);

    std::unique_ptr<const Tree> tree_;
};

} // namespace fennik
