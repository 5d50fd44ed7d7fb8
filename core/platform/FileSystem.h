#pragma once

#include "core/base/Date.h"
#include "core/base/PosixError.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace fennik {

enum class FileType { regular, directory, symlink, other };

/// How an item is told from every other, whatever its path.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// What the system says of one item.
struct FileStatus {
    FileType type = FileType::other;
    std::int64_t size = 0; ///< bytes of data
    Date modified = Date::distantPast();
    std::uint16_t mode = 0;   ///< the low 12 bits of the mode
    std::uint64_t device = 0; ///< with `inode`: the identity of the item
    std::uint64_t inode = 0;
    Date statusChanged = Date::distantPast(); ///< of content, mode, owner or names
    std::uint32_t names = 1;                  ///< hard links
    std::uint32_t owner = 0;                  ///< the user's number
    bool isPipe = false;                      ///< a named pipe

    FileIdentity identity() const { return {device, inode}; }
};

/// One entry of a folder as the system returns it.
struct FolderEntry {
    std::string_view name; ///< valid during the call of the consumer only
    FileType type = FileType::other;
    std::int64_t size = 0; ///< bytes of data; 0 for directories
    Date modified = Date::distantPast();
    std::uint16_t mode = 0;  ///< the low 12 bits of the mode
    bool hiddenFlag = false; ///< the system's own flag, not the leading dot
    bool isAlias = false;    ///< an alias file, on systems that have them
};

using FolderEntryConsumer = std::function<void(const FolderEntry&)>;

enum class FollowLinks { no, yes };

/// One entry of a folder as far as the size of a tree depends on it.
struct SizeEntry {
    std::string_view name; ///< valid during the call of the consumer only
    FileType type = FileType::other;
    std::int64_t size = 0; ///< bytes of data of a regular file, else 0
};

enum class Reading { goOn, stop };
using SizeConsumer = std::function<Reading(const SizeEntry&)>;

/// The calls to the disk that the core makes, so that tests can let one of them fail. All of them
/// may wait for the disk and are made on workers; all are safe on several threads at once. Paths
/// are absolute bytes.
class FileSystem {
public:
    template <class T>
    using Result = std::expected<T, PosixError>;

    virtual ~FileSystem() = default;

    [[nodiscard]] virtual Result<FileStatus> status(const std::string& path,
                                                    FollowLinks follow) const = 0;
    /// The target as it is written in the link.
    [[nodiscard]] virtual Result<std::string> linkTarget(const std::string& path) const = 0;
    /// Bytes that an ordinary user may still write to the volume of `path`. ENOTSUP for a volume
    /// that stores nothing.
    [[nodiscard]] virtual Result<std::int64_t> freeSpace(const std::string& path) const = 0;

    /// Whether this process may add and remove entries of the folder: EACCES, EROFS where it may
    /// not.
    [[nodiscard]] virtual Result<void> checkWritable(const std::string& folder) const = 0;

    /// All entries but "." and "..", in the order of the system, read in bulk. The consumer is
    /// called on this thread, and only once everything was read: on failure it has seen nothing.
    /// An entry that has vanished meanwhile or whose examination fails (EIO, a dead mount point) is
    /// left out; where rights forbid examining it (EACCES, EPERM), name and type are still given.
    /// ENOTSUP or EINVAL: this system or volume has no bulk reading.
    [[nodiscard]] virtual Result<void> readFolder(const std::string& path,
                                                  const FolderEntryConsumer& consume) const = 0;
    /// The same entries through the portable folder stream.
    [[nodiscard]] virtual Result<void>
    enumerateFolder(const std::string& path, const FolderEntryConsumer& consume) const = 0;

    /// The same entries with no more than their sizes, which costs less. `follow` is about `path`
    /// itself. The consumer is called on this thread while the folder is being read, until it says
    /// stop, which is no failure; on a failure it may have seen a part. ENOTSUP or EINVAL: take the
    /// other calls.
    [[nodiscard]] virtual Result<void> readSizes(const std::string& path, FollowLinks follow,
                                                 const SizeConsumer& consume) const = 0;
};

/// The real one. Lives as long as the process.
const FileSystem& systemFileSystem();

} // namespace fennik
