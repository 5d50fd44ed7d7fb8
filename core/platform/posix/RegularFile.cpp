#include "core/platform/RegularFile.h"

#include "core/platform/posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fennik {

namespace {

constexpr PosixError otherItem{ESTALE};
constexpr int readingOnly = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

} // namespace

RegularFile::Result<RegularFile> RegularFile::open(const OpenFolder& folder,
                                                   const std::string& name) {
    const int descriptor = retried(
        [&] { return openat(folder.descriptor(), name.c_str(), readingOnly | O_NOFOLLOW); });
    if (descriptor < 0 && (errno == ELOOP || errno == ENXIO)) // a link or a socket
        return std::unexpected(otherItem);
    if (descriptor < 0)
        return lastError();
    return checked(descriptor);
}

RegularFile::Result<RegularFile> RegularFile::openFollowing(const std::string& path) {
    struct stat status{};
    if (retried([&] { return stat(path.c_str(), &status); }) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode))
        return std::unexpected(otherItem);
    const int descriptor = retried([&] { return ::open(path.c_str(), readingOnly); });
    if (descriptor < 0)
        return lastError();
    return checked(descriptor);
}

/// Takes the open file over.
RegularFile::Result<RegularFile> RegularFile::checked(int descriptor) {
    RegularFile file(descriptor);
    const auto status = file.status();
    if (!status)
        return std::unexpected(status.error());
    if (status->type != FileType::regular)
        return std::unexpected(otherItem);
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
