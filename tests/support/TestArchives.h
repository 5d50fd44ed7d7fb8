#pragma once

#include "core/base/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Archives made for tests, as the bytes of their files. The ones written here byte by byte may say
/// whatever a test wants; those made by the library are sound.
namespace fennik::test {

/// 12 November 2024, 13:14:16 UTC: even, as ZIP keeps times.
inline constexpr Date testDate{1'731'417'256, 0};

struct ZipEntry {
    std::string name = {}; ///< as it is to be written, "/" at the end of a folder's
    std::string content = {};
    bool isUtf8 = true;       ///< the flag that says so of the name
    std::uint16_t flags = 0;  ///< further ones; 1: encrypted
    std::uint32_t mode = 0;   ///< type and permissions; 0: what the name says, 0644 or 0755
    std::uint16_t madeBy = 3; ///< the system; 3: Unix, 0: DOS, which keeps no `mode`
    std::uint16_t method = 0; ///< stored; `content` is what any other has made
    std::string extra = {};   ///< extra fields, written as they are
    std::optional<std::uint32_t> size = {};           ///< declared, in place of the true one
    std::optional<std::uint32_t> compressedSize = {}; ///< the same
    std::optional<std::uint32_t> checksum = {};       ///< the same
};
std::string zipOf(const std::vector<ZipEntry>& entries);

struct TarEntry {
    std::string name = {}; ///< at most 100 bytes; longer ones go into `pax` as "path"
    std::string content = {};
    char type = '0'; ///< of POSIX ustar: '1' hard link, '2' link, '3' device, '5' folder, '6' FIFO
    std::string linkName = {}; ///< at most 100 bytes
    std::uint32_t mode = 0644;
    Date modified = testDate;
    std::optional<std::uint64_t> size = {}; ///< declared, in place of the true one
    std::vector<std::pair<std::string, std::string>> pax = {}; ///< records of an extended header
};
std::string tarOf(const std::vector<TarEntry>& entries);

/// A 7z archive with nothing but this header, which is not compressed.
std::string sevenZipOf(std::string_view header);
/// Two empty files of which no names are kept.
std::string sevenZipWithoutNames();

/// What the library writes.
struct LibraryEntry {
    enum class Kind { file, directory, symlink, hardlink };
    std::string path = {};    ///< UTF-8
    std::string content = {}; ///< of links their target
    Kind kind = Kind::file;
    std::uint32_t mode = 0644;
    Date modified = testDate;
};
struct LibraryArchive {
    std::string format = "paxr"; ///< as the library calls it: "zip", "7zip", "newc", "raw"
    std::vector<std::string> filters = {}; ///< "gzip", "xz", "bzip2", "lzma", "compress", "zstd"
    std::string options = {};              ///< "zip:encryption=aes256"
    std::string password = {};
};
/// Throws where the library cannot.
std::string archiveOf(const LibraryArchive& archive, const std::vector<LibraryEntry>& entries);
/// One compressed file, and no collection.
std::string compressed(const std::string& filter, std::string_view content);

/// 32 bits as ZIP and 7z use them.
std::uint32_t checksum32(std::string_view bytes);

} // namespace fennik::test
