#pragma once

#include "core/platform/OpenFolder.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace fennik {

/// A new regular file that is being filled. It has its name from the first moment on, and until it
/// is complete nobody but its owner may read it. Every call may wait for the disk.
class NewFile {
public:
    template <class T>
    using Result = OpenFolder::Result<T>;

    /// EEXIST where the name is taken, by a dangling link too. `folder` outlives the file.
    static Result<NewFile> make(const OpenFolder& folder, const std::string& name);

    NewFile(NewFile&& other) noexcept;
    NewFile& operator=(NewFile&&) = delete;
    /// Closes the file as it is.
    ~NewFile();

    const FileIdentity& identity() const { return identity_; }
    /// What is never written below its size is a hole.
    Result<void> write(std::int64_t offset, std::span<const std::byte> bytes);
    /// Completes and closes it. `mode` is taken as it is. Mode and time that the target cannot keep
    /// are no failure. After a failure only `discard` is left to do.
    Result<void> finish(std::int64_t size, std::uint16_t mode, Date modified);
    /// Removes it; what somebody else has put in its place stays. An error: it may be there still.
    Result<void> discard() const;

private:
    NewFile(const OpenFolder& folder, std::string name, int descriptor)
        : folder_(folder), name_(std::move(name)), descriptor_(descriptor) {}

    const OpenFolder& folder_;
    std::string name_;
    int descriptor_; ///< negative: closed
    FileIdentity identity_ = {};
    std::int64_t end_ = 0; ///< of what was written
};

/// A symbolic link under a name that must be free: EEXIST. That it cannot be given its time is no
/// failure.
OpenFolder::Result<void> makeLink(const OpenFolder& folder, const std::string& name,
                                  const std::string& target, Date modified);

/// Gives the very file `item`, called `name`, one more name, which must be free: EEXIST. ESTALE
/// where something else has its name. No link is followed.
OpenFolder::Result<void> addName(const OpenFolder& from, const std::string& name,
                                 const FileIdentity& item, const OpenFolder& to,
                                 const std::string& newName);

/// What the target cannot keep is no failure.
OpenFolder::Result<void> setModeAndTime(const OpenFolder& folder, std::uint16_t mode,
                                        Date modified);

} // namespace fennik
