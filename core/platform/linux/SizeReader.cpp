#include "core/platform/linux/SizeReader.h"

#include "core/platform/linux/NameRecords.h"
#include "core/platform/posix/Descriptor.h"
#include "core/platform/posix/PosixCalls.h"
#include "core/platform/posix/PosixFileSystem.h"

#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

namespace fennik {

namespace {

/// On the stack: most folders of a tree are small, and giving memory back costs more than they do.
constexpr std::size_t bufferSize = 32UL * 1024;

/// No entry: it has vanished, or cannot be examined.
FileSystem::Result<std::optional<SizeEntry>> examine(int folder, const NameRecord& record) {
    SizeEntry entry{.name = record.name, .type = fileTypeOfEntry(record.entryType)};
    const bool isUnknown = record.entryType == DT_UNKNOWN;
    if (entry.type != FileType::regular && !isUnknown)
        return entry;
    struct statx info{};
    const unsigned wanted = isUnknown ? STATX_TYPE | STATX_SIZE : STATX_SIZE;
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    const char* name = record.name.data(); // NOLINT(bugprone-suspicious-stringview-data-usage)
    if (statx(folder, name, flags, wanted, &info) != 0) {
        if (errno == ENOSYS || errno == EINVAL)
            return std::unexpected(PosixError{ENOTSUP});
        if (listsUnexamined(errno))
            return entry;
        return std::nullopt;
    }
    if (isUnknown)
        entry.type = fileTypeOfMode(info.stx_mode);
    if (entry.type == FileType::regular)
        entry.size = static_cast<std::int64_t>(info.stx_size);
    return entry;
}

} // namespace

FileSystem::Result<void> readSizesInBulk(const std::string& path, FollowLinks follow,
                                         const SizeConsumer& consume) {
    const int linkFlag = follow == FollowLinks::yes ? 0 : O_NOFOLLOW;
    const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag));
    if (folder.number() < 0)
        return std::unexpected(PosixError{errno});
    std::array<char, bufferSize> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (;;) {
        const auto length = readNames(folder.number(), buffer);
        if (!length)
            return std::unexpected(length.error());
        if (*length == 0)
            return {};
        NameRecords records({buffer.data(), *length});
        while (const auto record = records.next()) {
            const auto entry = examine(folder.number(), *record);
            if (!entry)
                return std::unexpected(entry.error());
            const auto& known = *entry;
            if (known && consume(*known) == Reading::stop)
                return {};
        }
    }
}

} // namespace fennik
