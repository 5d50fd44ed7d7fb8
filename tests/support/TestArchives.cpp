#include "tests/support/TestArchives.h"

#include "core/archives/ArchiveLocale.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <concepts>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>

namespace fennik::test {

namespace {

/// In the order of bytes that most formats have: the least one first.
template <std::unsigned_integral Number>
void put(std::string& bytes, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> (8 * i) & 0xFFU);
}

std::uint16_t sized16(std::string_view bytes) {
    return static_cast<std::uint16_t>(bytes.size());
}

std::uint32_t sized32(std::string_view bytes) {
    return static_cast<std::uint32_t>(bytes.size());
}

// 12 November 2024, 13:14:16, as ZIP keeps local times.
constexpr std::uint16_t zipTime = 13U << 11U | 14U << 5U | 16U / 2;
constexpr std::uint16_t zipDay = (2024U - 1980U) << 9U | 11U << 5U | 12U;

/// What the record before the data and the one in the directory have in common.
std::string zipFields(const ZipEntry& entry) {
    const std::uint16_t utf8Flag = 0x800;
    std::string bytes;
    put(bytes, std::uint16_t{20});
    put(bytes, static_cast<std::uint16_t>(entry.flags | (entry.isUtf8 ? utf8Flag : 0)));
    put(bytes, entry.method);
    put(bytes, zipTime);
    put(bytes, zipDay);
    put(bytes, entry.checksum.value_or(checksum32(entry.content)));
    put(bytes, entry.compressedSize.value_or(sized32(entry.content)));
    put(bytes, entry.size.value_or(sized32(entry.content)));
    put(bytes, sized16(entry.name));
    put(bytes, sized16(entry.extra));
    return bytes;
}

std::uint32_t zipMode(const ZipEntry& entry) {
    if (entry.mode != 0)
        return entry.mode;
    return entry.name.ends_with('/') ? S_IFDIR | 0755U : S_IFREG | 0644U;
}

std::string zipDirectoryRecord(const ZipEntry& entry, std::size_t offset) {
    std::string bytes = "PK\1\2";
    put(bytes, static_cast<std::uint16_t>(entry.madeBy << 8U | 20U));
    bytes += zipFields(entry);
    put(bytes, std::uint16_t{0}); // comment
    put(bytes, std::uint16_t{0}); // disk
    put(bytes, std::uint16_t{0}); // internal attributes
    put(bytes, entry.madeBy == 3 ? zipMode(entry) << 16U : 0U);
    put(bytes, static_cast<std::uint32_t>(offset));
    return bytes + entry.name + entry.extra;
}

/// A field of a tar header.
void place(std::string& block, std::size_t offset, std::string_view text) {
    block.replace(offset, text.size(), text);
}

std::string octal(std::uint64_t number, std::size_t digits) {
    std::string text(digits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, number >>= 3U)
        *digit = static_cast<char>('0' + (number & 7U));
    return text;
}

constexpr std::size_t tarBlock = 512;

std::string padded(std::string bytes) {
    bytes.resize((bytes.size() + tarBlock - 1) / tarBlock * tarBlock);
    return bytes;
}

std::string tarHeader(const TarEntry& entry) {
    std::string block(tarBlock, '\0');
    place(block, 0, std::string_view(entry.name).substr(0, 100));
    place(block, 100, octal(entry.mode, 7));
    place(block, 108, octal(0, 7));
    place(block, 116, octal(0, 7));
    place(block, 124, octal(entry.size.value_or(entry.content.size()), 11));
    place(block, 136, octal(static_cast<std::uint64_t>(entry.modified.seconds), 11));
    block[156] = entry.type;
    place(block, 157, std::string_view(entry.linkName).substr(0, 100));
    place(block, 257,
          std::string_view("ustar\0"
                           "00",
                           8));
    place(block, 148, std::string(8, ' '));
    std::uint64_t sum = 0;
    for (const char byte : block)
        sum += static_cast<unsigned char>(byte);
    place(block, 148, octal(sum, 6) + '\0');
    return block;
}

/// "12 key=value\n", where the number counts itself.
std::string paxRecord(const std::string& key, const std::string& value) {
    const auto rest = " " + key + "=" + value + "\n";
    auto length = rest.size() + 1;
    while (std::to_string(length).size() + rest.size() != length)
        ++length;
    return std::to_string(length) + rest;
}

template <auto release>
struct Releasing {
    template <class Thing>
    void operator()(Thing* thing) const {
        release(thing);
    }
};

using Writer = std::unique_ptr<archive, Releasing<archive_write_free>>;
using Entry = std::unique_ptr<archive_entry, Releasing<archive_entry_free>>;

void require(archive* writer, la_ssize_t result) {
    if (result >= ARCHIVE_WARN)
        return;
    const char* message = archive_error_string(writer);
    throw std::runtime_error(message == nullptr ? "the library cannot" : message);
}

la_ssize_t appendTo(archive*, void* bytes, const void* data, std::size_t size) {
    static_cast<std::string*>(bytes)->append(static_cast<const char*>(data), size);
    return static_cast<la_ssize_t>(size);
}

unsigned fileType(LibraryEntry::Kind kind) {
    switch (kind) {
    case LibraryEntry::Kind::directory:
        return AE_IFDIR;
    case LibraryEntry::Kind::symlink:
        return AE_IFLNK;
    case LibraryEntry::Kind::file:
    case LibraryEntry::Kind::hardlink:
        break;
    }
    return AE_IFREG;
}

void fill(archive_entry* made, const LibraryEntry& entry) {
    archive_entry_clear(made);
    archive_entry_set_pathname(made, entry.path.c_str());
    archive_entry_set_filetype(made, fileType(entry.kind));
    archive_entry_set_perm(made, entry.mode);
    archive_entry_set_mtime(made, entry.modified.seconds, entry.modified.nanoseconds);
    const bool hasData = entry.kind == LibraryEntry::Kind::file;
    archive_entry_set_size(made, hasData ? static_cast<la_int64_t>(entry.content.size()) : 0);
    if (entry.kind == LibraryEntry::Kind::symlink)
        archive_entry_set_symlink(made, entry.content.c_str());
    if (entry.kind == LibraryEntry::Kind::hardlink)
        archive_entry_set_hardlink(made, entry.content.c_str());
}

} // namespace

std::uint32_t checksum32(std::string_view bytes) {
    std::uint32_t sum = ~0U;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1U ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

std::string zipOf(const std::vector<ZipEntry>& entries) {
    std::string bytes;
    std::string directory;
    for (const auto& entry : entries) {
        directory += zipDirectoryRecord(entry, bytes.size());
        bytes += "PK\3\4" + zipFields(entry) + entry.name + entry.extra + entry.content;
    }
    const auto offset = sized32(bytes);
    const auto count = static_cast<std::uint16_t>(entries.size());
    bytes += directory + "PK\5\6";
    put(bytes, std::uint32_t{0}); // disks
    put(bytes, count);
    put(bytes, count);
    put(bytes, sized32(directory));
    put(bytes, offset);
    put(bytes, std::uint16_t{0}); // comment
    return bytes;
}

std::string tarOf(const std::vector<TarEntry>& entries) {
    std::string bytes;
    for (const auto& entry : entries) {
        if (!entry.pax.empty()) {
            std::string records;
            for (const auto& [key, value] : entry.pax)
                records += paxRecord(key, value);
            bytes += tarHeader({.name = "pax", .content = records, .type = 'x'}) + padded(records);
        }
        bytes += tarHeader(entry) + padded(entry.content);
    }
    return bytes + std::string(2 * tarBlock, '\0');
}

std::string sevenZipOf(std::string_view header) {
    std::string place;
    put(place, std::uint64_t{0}); // directly behind this
    put(place, std::uint64_t{header.size()});
    put(place, checksum32(header));
    std::string bytes("7z\xBC\xAF\x27\x1C\0\4", 8);
    put(bytes, checksum32(place));
    return bytes + place + std::string(header);
}

std::string sevenZipWithoutNames() {
    // A header (1) with properties of files (5), namely two of them, whose empty streams (0x0E) are
    // those of empty files (0x0F).
    constexpr std::string_view header("\x01\x05\x02\x0E\x01\xC0\x0F\x01\xC0\x00\x00", 11);
    return sevenZipOf(header);
}

std::string archiveOf(const LibraryArchive& archive, const std::vector<LibraryEntry>& entries) {
    const ArchiveLocale locale;
    std::string bytes;
    const Writer writer(archive_write_new());
    require(writer.get(), archive_write_set_format_by_name(writer.get(), archive.format.c_str()));
    for (const auto& filter : archive.filters)
        require(writer.get(), archive_write_add_filter_by_name(writer.get(), filter.c_str()));
    if (!archive.options.empty())
        require(writer.get(), archive_write_set_options(writer.get(), archive.options.c_str()));
    if (!archive.password.empty())
        require(writer.get(), archive_write_set_passphrase(writer.get(), archive.password.c_str()));
    require(writer.get(), archive_write_set_bytes_in_last_block(writer.get(), 1));
    require(writer.get(), archive_write_open(writer.get(), &bytes, nullptr, appendTo, nullptr));
    const Entry made(archive_entry_new());
    for (const auto& entry : entries) {
        fill(made.get(), entry);
        require(writer.get(), archive_write_header(writer.get(), made.get()));
        if (entry.kind == LibraryEntry::Kind::file && !entry.content.empty())
            require(writer.get(),
                    archive_write_data(writer.get(), entry.content.data(), entry.content.size()));
    }
    require(writer.get(), archive_write_close(writer.get()));
    return bytes;
}

std::string compressed(const std::string& filter, std::string_view content) {
    return archiveOf({.format = "raw", .filters = {filter}},
                     {{.path = "data", .content = std::string(content)}});
}

} // namespace fennik::test
