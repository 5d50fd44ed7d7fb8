#pragma once

#include "core/platform/ItemCopy.h"
#include "core/platform/posix/ChunkSize.h"

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <span>
#include <sys/stat.h>

namespace fennik {

/// How long somebody is waited for who is going to be ready soon: between two tries, and how often.
constexpr auto waitForOthers = std::chrono::milliseconds(50);
constexpr int mostWaits = 20;

/// Copies ranges of data between two open files in chunks.
class RangeCopy {
public:
    using Result = std::expected<void, CopyFailure>;
    /// Moves at most `length` bytes from `offset` to the same offset; how many it were, 0 at the
    /// end of the source, or negative with errno.
    using Method = std::int64_t (*)(RangeCopy& copy, std::int64_t offset, std::int64_t length);

    /// `methods`: the best one first, the next ones for files that it does not serve. They and
    /// `progress` outlive the copy.
    RangeCopy(int from, int to, std::span<const Method> methods, const CopyProgress& progress)
        : from_(from), to_(to), methods_(methods), progress_(progress) {}

    int from() const { return from_; }
    int to() const { return to_; }
    /// Less where the source ends earlier.
    Result copy(std::int64_t offset, std::int64_t length);
    /// Of a source that is empty or does not say how long it is.
    Result copyAll();

    /// The method that every system has.
    static std::int64_t readAndWrite(RangeCopy& copy, std::int64_t offset, std::int64_t length);

private:
    std::expected<std::int64_t, CopyFailure> copyChunk(std::int64_t offset, std::int64_t length);

    int from_;
    int to_;
    std::span<const Method> methods_;
    const CopyProgress& progress_;
    ChunkSize chunk_;
    std::int64_t bufferSize_ = 0;
    std::unique_ptr<char[]> buffer_;
};

/// A failed call on the way; `errno` says why.
std::unexpected<CopyFailure> lastCopyFailure();

std::unexpected<CopyFailure> stopped();

/// Copies all the data of a regular file, in the best way that the system has. `seen` is what the
/// system said of the source when it was opened: what is written to it later is not waited for.
RangeCopy::Result copyData(int from, const struct stat& seen, int to, Cloning cloning,
                           const CopyProgress& progress);

} // namespace fennik
