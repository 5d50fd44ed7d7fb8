#pragma once

#include "core/platform/FileSystem.h"

#include <expected>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace fennik {

/// A folder held open. What is done through it reaches the entries of that very folder, even when
/// its path leads elsewhere meanwhile, and no link in an entry's name is ever followed. Names are
/// single components. Every call may wait for the disk and is made on workers.
class OpenFolder {
public:
    template <class T>
    using Result = std::expected<T, PosixError>;

    struct Entry {
        std::string name = {};
        FileType type = FileType::other;
    };

    /// `follow` is about the last component of `path`; links in the ones before it are followed. A
    /// folder that one may not list is opened all the same: entries can be reached by their names.
    static Result<OpenFolder> open(const std::string& path, FollowLinks follow);
    /// ENOTDIR or ELOOP for a link.
    Result<OpenFolder> openChild(const std::string& name) const;

    OpenFolder(OpenFolder&& other) noexcept;
    OpenFolder& operator=(OpenFolder&& other) noexcept;
    ~OpenFolder();

    /// Of the folder itself.
    Result<FileStatus> status() const;
    /// Of one entry; of the link where it is one.
    Result<FileStatus> status(const std::string& name) const;
    /// All entries but "." and "..", in the order of the system. A failure on the way is a failure.
    Result<std::vector<Entry>> entries() const;
    Result<std::string> linkTarget(const std::string& name) const;

    /// EEXIST where the name is taken, by a dangling link too. `mode` is subject to the umask.
    Result<void> makeFolder(const std::string& name, std::uint16_t mode) const;
    /// A new file with exactly these bytes, synced. EEXIST as above; on any other failure nothing
    /// is left.
    Result<void> makeFile(const std::string& name, std::string_view content,
                          std::uint16_t mode) const;
    /// Anything but a folder.
    Result<void> removeFile(const std::string& name) const;
    /// An empty folder.
    Result<void> removeFolder(const std::string& name) const;

    /// Waits until the names in this folder are on the disk.
    Result<void> sync() const;
    /// Waits until the data of a regular file is on the disk; nothing to do for other types.
    Result<void> syncFile(const std::string& name) const;
    /// Waits until everything written to the volume of this folder is on the disk. What failed to
    /// be written since this folder was opened is a failure. ENOTSUP where waiting does not tell
    /// that: behind a process or a server, or without the right to list this folder.
    Result<void> syncVolume() const;

    /// The number of the open file, for the other calls of the platform.
    int descriptor() const { return descriptor_; }

private:
    explicit OpenFolder(int descriptor) : descriptor_(descriptor) {}

    int descriptor_;
};

/// Moves an entry to a name that is free, and never replaces anything: EEXIST where something has
/// that name, EXDEV where the places lie on different volumes (bind mounts included), EINVAL for a
/// folder into itself. File systems that know no such call are served by others that replace
/// nothing either.
OpenFolder::Result<void> renameExclusively(const OpenFolder& from, const std::string& name,
                                           const OpenFolder& to, const std::string& newName);

/// Gives an entry another name in its folder where the two names are one to the file system, as
/// "readme" and "README" are where case does not count. Refuses with EEXIST unless `newName` is
/// free, or both names lead to the same item and the folder lists only one of them.
OpenFolder::Result<void> renameWithinCase(const OpenFolder& folder, const std::string& name,
                                          const std::string& newName);

} // namespace fennik
