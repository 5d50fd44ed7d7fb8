#include "core/platform/Memory.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace fennik::Memory {

void returnLargeBlocks() {
#ifdef __GLIBC__
    // Left alone, glibc raises the threshold with the largest block freed, and keeps the rest.
    constexpr int threshold = 1 << 20;
    // Called before there is a second thread that could allocate.
    mallopt(M_MMAP_THRESHOLD, threshold); // NOLINT(concurrency-mt-unsafe)
#endif
}

} // namespace fennik::Memory
