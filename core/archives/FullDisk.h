#pragma once

#include "core/base/PosixError.h"

#include <cerrno>

namespace fennik {

/// Notices that a disk is full, where it would be of no use to try each of a hundred thousand
/// items.
class FullDisk {
public:
    static bool isReason(const PosixError& error) {
        return error.code == ENOSPC || error.code == EDQUOT;
    }

    void failed(const PosixError& error) {
        if (isReason(error))
            ++times_;
    }
    /// There was room for an item. A full disk stays full.
    void tookOne() {
        if (!isFull())
            times_ = 0;
    }
    bool isFull() const { return times_ >= enough; }

private:
    /// A small item may still fit where a large one did not.
    static constexpr int enough = 3;

    int times_ = 0; ///< one after the other
};

} // namespace fennik
