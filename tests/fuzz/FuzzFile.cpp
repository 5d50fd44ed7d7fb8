#include "tests/fuzz/FuzzFile.h"

#include <cstdlib>
#include <iostream>
#include <sys/mman.h>
#include <unistd.h>

namespace fennik::test {

int fileHolding(std::span<const std::uint8_t> bytes) {
    const int file = memfd_create("archive", MFD_CLOEXEC);
    require(pwrite(file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
            "the input can be written");
    return file;
}

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::cerr << "Does not hold: " << what << '\n';
    std::abort();
}

} // namespace fennik::test
