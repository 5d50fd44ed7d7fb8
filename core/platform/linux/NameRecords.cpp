#include "core/platform/linux/NameRecords.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace fennik {

std::optional<NameRecord> NameRecords::next() {
    while (!left_.empty()) {
        const char* record = left_.data();
        std::uint16_t recordLength = 0;
        std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
        left_ = left_.subspan(recordLength);
        const std::string_view name(record + offsetof(dirent64, d_name));
        if (name == "." || name == "..")
            continue;
        return NameRecord{name, static_cast<unsigned char>(record[offsetof(dirent64, d_type)])};
    }
    return std::nullopt;
}

FileSystem::Result<std::size_t> readNames(int folder, std::span<char> buffer) {
    for (;;) {
        const auto length = syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
        if (length >= 0)
            return static_cast<std::size_t>(length);
        if (errno != EINTR)
            return std::unexpected(PosixError{errno});
    }
}

} // namespace fennik
