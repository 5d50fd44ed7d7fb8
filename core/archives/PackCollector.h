#pragma once

#include "core/archives/PackOptions.h"
#include "core/base/Date.h"
#include "core/base/FileUrl.h"
#include "core/operations/FolderNode.h"
#include "core/operations/OperationContext.h"
#include "core/platform/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace fennik {

/// One item that goes into an archive, as it was when it was collected.
struct PackItem {
    FolderNode::Pointer folder = {}; ///< that holds it
    std::string name = {};
    std::string path = {}; ///< inside the archive
    FileType type = FileType::regular;
    std::int64_t size = 0; ///< of a regular file, else 0
    Date modified = {};
    std::uint16_t mode = 0;
    FileIdentity identity = {};
};

/// Many such items in their order, in little memory.
class PackItems {
public:
    std::size_t size() const { return records_.size(); }
    bool empty() const { return records_.empty(); }
    PackItem operator[](std::size_t index) const;
    /// Of all files together; holes may make it any number.
    std::int64_t bytes() const { return bytes_; }

private:
    friend class PackCollector;
    struct Folder {
        FolderNode::Pointer node = {};
        std::string path = {}; ///< of what lies in it, up to its name
        std::size_t depth = 0; ///< folders in `path`
    };
    struct Record {
        std::size_t nameEnd = 0; ///< in the names; it begins where that of the item before ends
        std::int64_t size = 0;
        std::int64_t seconds = 0;
        FileIdentity identity = {};
        std::uint32_t nanoseconds = 0;
        std::uint32_t folder = 0; ///< an index
        std::uint16_t mode = 0;
        FileType type = FileType::regular;
    };

    std::vector<Folder> folders_;
    std::vector<Record> records_;
    std::string names_; ///< one after the other
    std::int64_t bytes_ = 0;
};

/// Where the archive is going to be.
struct PackPlace {
    FolderNode::Pointer folder = {};
    std::optional<FileIdentity> archive = {}; ///< what has its name already
};

/// Finds all that is to be packed: each source with everything below it, folders before what they
/// hold, by names. No link is followed. What is neither file, folder nor link is left out, and the
/// context told of it; so are, without a word, unfinished archives and, where the options say so,
/// what another system leaves behind.
class PackCollector {
public:
    /// All of it outlives the collector; the folders outlive the items too.
    PackCollector(OpenFolders& folders, const PackPlace& place, const PackOptions& options,
                  OperationContext& context)
        : folders_(folders), place_(place), options_(options), context_(context) {}

    /// None after a failure, of which the context has been told, and after a cancellation: where
    /// something cannot be read, has a name that the format cannot hold, or would contain the
    /// archive.
    std::optional<PackItems> collect(const std::vector<FileUrl>& sources);

private:
    struct Level {
        std::uint32_t folder = 0;            ///< an index
        std::vector<std::string> names = {}; ///< what is still to be visited, the next one last
    };

    bool collectSource(const FileUrl& source);
    bool visit(std::uint32_t folder, const std::string& name);
    bool add(std::uint32_t folder, const std::string& name, const FileStatus& status);
    bool enter(std::uint32_t folder, const std::string& name);
    bool isLeftOut(std::string_view name) const;
    bool containsArchive(const FileStatus& status) const;
    bool fail(std::string sentence);

    OpenFolders& folders_;
    const PackPlace& place_;
    const PackOptions& options_;
    OperationContext& context_;
    PackItems items_;
    std::vector<Level> levels_;
    std::unordered_set<std::string> topNames_;
    std::optional<FileUrl> lastFolder_; ///< that held the source before
    std::uint32_t lastFolderIndex_ = 0;
};

/// Whether a name or the target of a link comes out of an archive as it went in.
bool canHold(ArchiveFormat format, std::string_view text);

/// The sentence on an item that cannot be read.
std::string unreadable(std::string_view name, const PosixError& error);
/// The one on what is neither file, folder nor link.
std::string unpackable(std::string_view name);

} // namespace fennik
