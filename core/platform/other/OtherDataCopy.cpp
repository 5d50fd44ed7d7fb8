#include "core/platform/posix/DataCopy.h"

#include <array>

namespace fennik {

RangeCopy::Result copyData(int from, const struct stat& seen, int to, Cloning,
                           const CopyProgress& progress) {
    constexpr std::array<RangeCopy::Method, 1> methods{&RangeCopy::readAndWrite};
    RangeCopy data(from, to, methods, progress);
    return seen.st_size == 0 ? data.copyAll() : data.copy(0, seen.st_size);
}

} // namespace fennik
