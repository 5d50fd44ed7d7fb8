#pragma once

#include <chrono>
#include <cstdint>

namespace fennik {

/// How many bytes to move at once: so many that a chunk takes about 50 ms, because between chunks
/// the user is shown how far the copy is, and may stop it.
class ChunkSize {
public:
    static constexpr std::int64_t least = 64LL * 1024;
    static constexpr std::int64_t most = 8LL * 1024 * 1024;

    std::int64_t bytes() const { return bytes_; }
    /// Learns from one chunk.
    void took(std::int64_t moved, std::chrono::nanoseconds time);

private:
    std::int64_t bytes_ = 512LL * 1024;
};

} // namespace fennik
