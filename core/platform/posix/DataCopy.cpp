#include "core/platform/posix/DataCopy.h"

#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <thread>
#include <unistd.h>

namespace fennik {

namespace {

constexpr std::int64_t bufferLimit = 256LL * 1024;

/// Whether a call says that it does not serve these two files. Everything else, EIO above all, is
/// what became of data.
bool isUnserved(int errorCode) {
    return errorCode == EXDEV || errorCode == EINVAL || errorCode == EOPNOTSUPP ||
           errorCode == ENOSYS || errorCode == EPERM || errorCode == ETXTBSY;
}

} // namespace

std::unexpected<CopyFailure> lastCopyFailure() {
    return std::unexpected(CopyFailure{.kind = CopyFailure::Kind::failed, .error = {errno}});
}

std::unexpected<CopyFailure> stopped() {
    return std::unexpected(CopyFailure{.kind = CopyFailure::Kind::stopped});
}

std::int64_t RangeCopy::readAndWrite(RangeCopy& copy, std::int64_t offset, std::int64_t length) {
    const auto wanted = std::min(length, bufferLimit);
    if (copy.bufferSize_ < wanted) {
        copy.buffer_ = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(wanted));
        copy.bufferSize_ = wanted;
    }
    const auto count = retried([&] {
        return pread(copy.from_, copy.buffer_.get(), static_cast<std::size_t>(wanted), offset);
    });
    if (count <= 0)
        return count;
    const std::span data(copy.buffer_.get(), static_cast<std::size_t>(count));
    return writeAllAt(copy.to_, std::as_bytes(data), offset) != 0 ? -1 : count;
}

std::expected<std::int64_t, CopyFailure> RangeCopy::copyChunk(std::int64_t offset,
                                                              std::int64_t length) {
    using Clock = std::chrono::steady_clock;
    for (int waits = 0;;) {
        const auto begin = Clock::now();
        const auto moved = methods_.front()(*this, offset, std::min(length, chunk_.bytes()));
        // Some file systems move nothing and call that success.
        const bool isUseless = moved == 0 || (moved < 0 && isUnserved(errno));
        if (isUseless && methods_.size() > 1) {
            methods_ = methods_.subspan(1);
            continue;
        }
        // Some files of the system have data only now and then.
        if (moved < 0 && errno == EAGAIN && waits < mostWaits) {
            ++waits;
            std::this_thread::sleep_for(waitForOthers);
            if (progress_(0) == CopyStep::stop)
                return stopped();
            continue;
        }
        if (moved < 0)
            return lastCopyFailure();
        if (moved == 0)
            return 0;
        const auto step = progress_(moved);
        // With the time for which the progress holds the copy back: the slower it is meant to be,
        // the smaller the steps that are seen.
        chunk_.took(moved, Clock::now() - begin);
        if (step == CopyStep::stop)
            return stopped();
        return moved;
    }
}

RangeCopy::Result RangeCopy::copy(std::int64_t offset, std::int64_t length) {
    while (length > 0) {
        const auto moved = copyChunk(offset, length);
        if (!moved)
            return std::unexpected(moved.error());
        if (*moved == 0)
            return {};
        offset += *moved;
        length -= *moved;
    }
    return {};
}

RangeCopy::Result RangeCopy::copyAll() {
    char first = 0;
    struct stat now{};
    const auto count = retried([&] { return pread(from_, &first, 1, 0); });
    const bool isEmpty = count == 0;
    // With a size by now it is an ordinary file that was empty, and is being written to.
    if (isEmpty || (count > 0 && fstat(from_, &now) == 0 && now.st_size > 0))
        return {};
    return copy(0, std::numeric_limits<std::int64_t>::max());
}

} // namespace fennik
