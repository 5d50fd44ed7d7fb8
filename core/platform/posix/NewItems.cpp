#include "core/platform/NewItems.h"

#include "core/platform/posix/ItemMetadata.h"
#include "core/platform/posix/OwnEntry.h"
#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

using Done = OpenFolder::Result<void>;

/// As the calls of the system take them; the time of access stays what it is.
std::array<timespec, 2> timesOf(Date modified) {
    timespec untouched{};
    untouched.tv_nsec = UTIME_OMIT;
    timespec time{};
    time.tv_sec = modified.seconds;
    time.tv_nsec = modified.nanoseconds;
    return {untouched, time};
}

Done setModeAndTime(int descriptor, std::uint16_t mode, Date modified) {
    const auto times = timesOf(modified);
    if (retried([&] { return futimens(descriptor, times.data()); }) != 0 && !isBeyondTarget(errno))
        return lastError();
    // Only once everything else is right the mode lets others in.
    if (retried([&] { return fchmod(descriptor, mode); }) != 0 && !isBeyondTarget(errno))
        return lastError();
    return {};
}

} // namespace

NewFile::Result<NewFile> NewFile::make(const OpenFolder& folder, const std::string& name) {
    const int descriptor = retried([&] {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        return openat(folder.descriptor(), name.c_str(), flags, S_IRUSR | S_IWUSR);
    });
    if (descriptor < 0)
        return lastError();
    NewFile file(folder, name, descriptor);
    const auto status = statusOf(descriptor);
    if (!status) {
        static_cast<void>(removeOwnFile(folder, name, descriptor));
        return std::unexpected(status.error());
    }
    file.identity_ = status->identity();
    return file;
}

NewFile::NewFile(NewFile&& other) noexcept
    : folder_(other.folder_),
      name_(std::move(other.name_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      identity_(other.identity_),
      end_(other.end_) {}

NewFile::~NewFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

NewFile::Result<void> NewFile::write(std::int64_t offset, std::span<const std::byte> bytes) {
    if (writeAllAt(descriptor_, bytes, offset) != 0)
        return lastError();
    end_ = std::max(end_, offset + static_cast<std::int64_t>(bytes.size()));
    return {};
}

NewFile::Result<void> NewFile::finish(std::int64_t size, std::uint16_t mode, Date modified) {
    if (end_ != size && retried([&] { return ftruncate(descriptor_, size); }) != 0)
        return lastError();
    if (const auto set = setModeAndTime(descriptor_, mode, modified); !set)
        return set;
    // Only now some file systems say that there was no room.
    if (close(std::exchange(descriptor_, -1)) != 0)
        return lastError();
    return {};
}

NewFile::Result<void> NewFile::discard() const {
    const auto found = folder_.status(name_);
    if (!found && found.error().code == ENOENT)
        return {};
    if (!found)
        return std::unexpected(found.error());
    return found->identity() == identity_ ? folder_.removeFile(name_) : Result<void>{};
}

Done makeLink(const OpenFolder& folder, const std::string& name, const std::string& target,
              Date modified) {
    if (symlinkat(target.c_str(), folder.descriptor(), name.c_str()) != 0)
        return lastError();
    const auto times = timesOf(modified);
    static_cast<void>(
        utimensat(folder.descriptor(), name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW));
    return {};
}

Done addName(const OpenFolder& from, const std::string& name, const FileIdentity& item,
             const OpenFolder& to, const std::string& newName) {
    const auto named = from.status(name);
    if (!named)
        return std::unexpected(named.error());
    if (named->identity() != item)
        return std::unexpected(PosixError{ESTALE});
    if (linkat(from.descriptor(), name.c_str(), to.descriptor(), newName.c_str(), 0) != 0)
        return lastError();
    // Somebody may have exchanged the item in between; what was named so has its own name still.
    const auto made = to.status(newName);
    if (made && made->identity() == item)
        return {};
    static_cast<void>(to.removeFile(newName));
    return std::unexpected(made ? PosixError{ESTALE} : made.error());
}

Done setModeAndTime(const OpenFolder& folder, std::uint16_t mode, Date modified) {
    return setModeAndTime(folder.descriptor(), mode, modified);
}

} // namespace fennik
