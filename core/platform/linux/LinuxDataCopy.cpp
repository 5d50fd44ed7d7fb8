#include "core/platform/posix/DataCopy.h"
#include "core/platform/posix/PosixCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace fennik {

namespace {

/// Below this, setting up a clone or a copy by the kernel costs more than the bytes do.
constexpr std::int64_t smallSize = 64LL * 1024;

std::int64_t copyByKernel(RangeCopy& copy, std::int64_t offset, std::int64_t length) {
    return retried([&copy, offset, length] {
        off_t source = offset;
        off_t target = offset;
        return copy_file_range(copy.from(), &source, copy.to(), &target,
                               static_cast<std::size_t>(length), 0);
    });
}

struct Range {
    std::int64_t begin = 0;
    std::int64_t end = 0;
};

/// The next data at or after `offset`; an empty range at the end where nothing but a hole is left.
Range nextData(int file, std::int64_t offset, std::int64_t size) {
    const auto begin = lseek(file, offset, SEEK_DATA);
    if (begin < 0 && errno == ENXIO)
        return {size, size};
    if (begin < 0) // it does not tell
        return {offset, size};
    const auto end = lseek(file, begin, SEEK_HOLE);
    return {std::min(begin, size), end < 0 ? size : std::min(end, size)};
}

/// Makes the hole at the end. A source that has become shorter ends where it ends now.
RangeCopy::Result setEnd(int from, int to, std::int64_t size) {
    struct stat now{};
    if (fstat(from, &now) != 0)
        return lastCopyFailure();
    const auto end = std::min<std::int64_t>(size, now.st_size);
    if (retried([to, end] { return ftruncate(to, end); }) != 0)
        return lastCopyFailure();
    return {};
}

RangeCopy::Result copyWithHoles(RangeCopy& data, std::int64_t size) {
    Range range = nextData(data.from(), 0, size);
    for (; range.begin < range.end; range = nextData(data.from(), range.end, size)) {
        if (const auto copied = data.copy(range.begin, range.end - range.begin); !copied)
            return copied;
    }
    return setEnd(data.from(), data.to(), size);
}

bool isCloned(int from, int to) {
    return retried([from, to] { return ioctl(to, FICLONE, from); }) == 0;
}

} // namespace

RangeCopy::Result copyData(int from, const struct stat& seen, int to, Cloning cloning,
                           const CopyProgress& progress) {
    constexpr std::array<RangeCopy::Method, 2> all{&copyByKernel, &RangeCopy::readAndWrite};
    const bool isSmall = seen.st_size <= smallSize;
    RangeCopy data(from, to, isSmall ? std::span(all).last(1) : std::span(all), progress);
    if (seen.st_size == 0)
        return data.copyAll();
    // Whatever the reason is that there is no clone, the other ways lead to it as well.
    if (!isSmall && cloning == Cloning::allowed && isCloned(from, to))
        return {};
    constexpr std::int64_t blockSize = 512; // of st_blocks, everywhere
    if (seen.st_blocks * blockSize < seen.st_size)
        return copyWithHoles(data, seen.st_size);
    return data.copy(0, seen.st_size);
}

} // namespace fennik
