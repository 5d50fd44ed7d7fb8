#pragma once

#include <cstddef>
#include <new>
#include <sys/mman.h>
#include <vector>

namespace fennik::test {

/// Maps what it may, as an allocator does, and then fails as one does; under a sanitizer too, whose
/// own allocator would not come to an end.
[[noreturn]] inline void useUpMemory() {
    constexpr std::size_t size = 1 << 20;
    std::vector<void*> pieces;
    while (pieces.empty() || pieces.back() != MAP_FAILED)
        pieces.push_back(
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    for (auto* const piece : pieces)
        munmap(piece, size);
    throw std::bad_alloc();
}

} // namespace fennik::test
