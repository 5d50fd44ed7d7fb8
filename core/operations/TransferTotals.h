#pragma once

#include <cstdint>

namespace fennik {

/// What a transfer has before it.
struct TransferTotals {
    std::int64_t bytes = 0; ///< of data
    std::int64_t files = 0; ///< everything but folders

    TransferTotals& operator+=(const TransferTotals& other) {
        bytes += other.bytes;
        files += other.files;
        return *this;
    }
    friend bool operator==(const TransferTotals&, const TransferTotals&) = default;
};

} // namespace fennik
