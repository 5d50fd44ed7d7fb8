#pragma once

#include "core/platform/OpenFolder.h"

#include <cstddef>
#include <span>
#include <string>

namespace fennik {

/// A regular file that is open for reading, from its beginning to its end. Waits for the disk; used
/// on workers.
class RegularFile {
public:
    template <class T>
    using Result = OpenFolder::Result<T>;

    /// Never waits for who holds the other end of a pipe, and follows no link: ESTALE for anything
    /// but a regular file. EAGAIN: somebody holds a lease on it, and is going to give it up soon.
    static Result<RegularFile> open(const OpenFolder& folder, const std::string& name);
    /// The file that `path` leads to, through links too. What is no regular file is not even
    /// opened, as opening a device may do something: ESTALE.
    static Result<RegularFile> openFollowing(const std::string& path);
    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&& other) noexcept;
    ~RegularFile();

    /// As it was when it was opened.
    const FileStatus& opened() const { return opened_; }
    /// As it is now.
    Result<FileStatus> status() const;
    /// The next bytes; how many they are, which may be fewer than there is room for. 0 at the end.
    Result<std::size_t> read(std::span<std::byte> buffer) const;
    /// The number of the open file, for the other calls of the platform.
    int descriptor() const { return descriptor_; }

private:
    explicit RegularFile(int descriptor) : descriptor_(descriptor) {}
    static Result<RegularFile> checked(int descriptor);

    int descriptor_;
    FileStatus opened_ = {};
};

} // namespace fennik
