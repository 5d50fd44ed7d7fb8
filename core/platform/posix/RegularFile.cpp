#include "core/platform/RegularFile.h"

#include "core/platform/posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace fennik {

RegularFile::Result<RegularFile> RegularFile::open(const OpenFolder& folder,
                                                   const std::string& name) {
    constexpr PosixError other{ESTALE};
    const int descriptor = retried([&] {
        constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
        return openat(folder.descriptor(), name.c_str(), flags);
    });
    if (descriptor < 0 && (errno == ELOOP || errno == ENXIO)) // a link or a socket
        return std::unexpected(other);
    if (descriptor < 0)
        return lastError();
    RegularFile file(descriptor);
    const auto status = file.status();
    if (!status)
        return std::unexpected(status.error());
    if (status->type != FileType::regular)
        return std::unexpected(other);
    file.opened_ = *status;
    return file;
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), opened_(other.opened_) {}

RegularFile& RegularFile::operator=(RegularFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(opened_, other.opened_);
    return *this;
}

RegularFile::~RegularFile() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

RegularFile::Result<FileStatus> RegularFile::status() const {
    return statusOf(descriptor_);
}

RegularFile::Result<std::size_t> RegularFile::read(std::span<std::byte> buffer) const {
    const auto length = retried([&] { return ::read(descriptor_, buffer.data(), buffer.size()); });
    if (length < 0)
        return lastError();
    return static_cast<std::size_t>(length);
}

} // namespace fennik
