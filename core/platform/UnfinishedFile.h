#pragma once

#include "core/platform/OpenFolder.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace fennik {

/// A new file while it is being written: under a hidden name of its own, ".fennik-" and a UUID, and
/// locked, so that nobody takes it for one that a killed program has left. Removed at the end of
/// this object unless it was published. Waits for the disk; used on workers.
class UnfinishedFile {
public:
    template <class T>
    using Result = OpenFolder::Result<T>;

    /// Whether unfinished files are called so.
    static bool isName(std::string_view name);
    /// Removes what programs of this user that were killed have left in the folder: regular files
    /// with such a name that nobody has locked. Does what it can.
    static void removeAbandoned(const OpenFolder& folder);

    /// The folder stays open as long as the file lives.
    static Result<UnfinishedFile> create(std::shared_ptr<const OpenFolder> folder);
    UnfinishedFile(UnfinishedFile&& other) noexcept;
    UnfinishedFile& operator=(UnfinishedFile&& other) noexcept;
    ~UnfinishedFile();

    /// All of it, or a failure.
    Result<void> write(std::span<const std::byte> bytes) const;
    /// Waits until the data is on the disk; only then some file systems say that there was no room.
    Result<void> sync() const;
    /// Gives the file its name, and never replaces anything: EEXIST where the name is taken.
    /// ESTALE: somebody has put something else in its place. After a failure it is still
    /// unfinished.
    Result<void> publish(const std::string& name);
    /// Removes the file; what somebody else has put in its place stays. On failure the file may be
    /// there still, and nobody sees to it any more.
    Result<void> discard();

    const std::string& name() const { return name_; }

private:
    UnfinishedFile(std::shared_ptr<const OpenFolder> folder, std::string name, int descriptor)
        : folder_(std::move(folder)), name_(std::move(name)), descriptor_(descriptor) {}

    std::shared_ptr<const OpenFolder> folder_;
    std::string name_;
    int descriptor_;
};

} // namespace fennik
