#pragma once

#include <cstddef>
#include <cstdint>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Folders listed with the system calls that nobody can do without, and nothing else: what Fennik's
/// listing is measured against. A failing call ends the program, as the figures would mean nothing.
namespace fennik::bench {

/// What the calls brought, so that two ways of listing can be checked against each other.
struct Totals {
    std::size_t entries = 0;
    std::int64_t bytes = 0; ///< of all entries but folders

    friend bool operator==(const Totals&, const Totals&) = default;
};

/// 256 KiB of names at a time, each examined at once.
Totals listOnOneThread(const std::string& folder);
/// The names dealt to two threads in blocks of 1,024, while the rest are still being read.
Totals listOnTwoThreads(const std::string& path);

inline constexpr std::size_t namesBuffer = 256UL * 1024;

/// The descriptor of an open folder.
class OpenFolder {
public:
    explicit OpenFolder(const std::string& path);
    ~OpenFolder() { close(number_); }
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;

    /// Fills `buffer` of `size` bytes; 0 at the end of the folder.
    std::size_t read(char* buffer, std::size_t size = namesBuffer) const;
    /// The wanted facts of an entry; what a panel shows unless told otherwise.
    struct statx examine(const char* name, unsigned wanted = STATX_TYPE | STATX_MODE | STATX_SIZE |
                                                             STATX_MTIME) const;

private:
    int number_;
};

/// Calls `each` with the records in a filled buffer, without "." and "..".
template <class Each>
void forEachRecord(const char* buffer, std::size_t length, Each each) {
    for (std::size_t position = 0; position < length;) {
        const auto* record = reinterpret_cast<const dirent64*>(buffer + position);
        position += record->d_reclen;
        const char* name = record->d_name;
        const bool isDots =
            name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
        if (!isDots)
            each(*record);
    }
}

/// Calls `each` with the names in a filled buffer, without "." and "..".
template <class Each>
void forEachName(const char* buffer, std::size_t length, Each each) {
    forEachRecord(buffer, length, [&each](const dirent64& record) { each(record.d_name); });
}

/// Calls `each` with the name and the `struct statx` of all entries.
template <class Each>
void forEachEntry(const std::string& path, Each each) {
    const OpenFolder folder(path);
    const auto buffer = std::make_unique_for_overwrite<char[]>(namesBuffer);
    while (const auto length = folder.read(buffer.get()))
        forEachName(buffer.get(), length,
                    [&](const char* name) { each(name, folder.examine(name)); });
}

} // namespace fennik::bench
