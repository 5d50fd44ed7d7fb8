// The least that packs a tree through the library, and sees to it that the archive is on the disk:
//   bare_pack EXTENSION LEVEL ARCHIVE SOURCE
// The level is 1 or more.
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <clocale>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::array<char, 65536> buffer;

void require(bool succeeded) {
    if (!succeeded)
        std::abort();
}

void configure(archive* writer, std::string_view extension, const char* level) {
    using AddFilter = int (*)(archive*);
    const auto setTar = [&](AddFilter addFilter, const char* filter) {
        archive_write_set_format_pax_restricted(writer);
        require(addFilter(writer) == ARCHIVE_OK &&
                archive_write_set_filter_option(writer, filter, "compression-level", level) ==
                    ARCHIVE_OK);
    };
    const auto setFormat = [&](const char* module, const char* compression) {
        require(archive_write_set_format_option(writer, module, "compression", compression) ==
                    ARCHIVE_OK &&
                archive_write_set_format_option(writer, module, "compression-level", level) ==
                    ARCHIVE_OK);
    };
    if (extension == "zip") {
        archive_write_set_format_zip(writer);
        setFormat("zip", "deflate");
    } else if (extension == "7z") {
        archive_write_set_format_7zip(writer);
        setFormat("7zip", "lzma2");
    } else if (extension == "tar.gz") {
        setTar(archive_write_add_filter_gzip, "gzip");
    } else if (extension == "tar.bz2") {
        setTar(archive_write_add_filter_bzip2, "bzip2");
    } else {
        require(extension == "tar.xz");
        setTar(archive_write_add_filter_xz, "xz");
        require(archive_write_set_filter_option(writer, "xz", "threads", "0") == ARCHIVE_OK);
    }
}

void copyData(archive* writer, int file) {
    for (;;) {
        const auto length = read(file, buffer.data(), buffer.size());
        require(length >= 0);
        if (length == 0)
            return;
        require(archive_write_data(writer, buffer.data(), static_cast<std::size_t>(length)) ==
                length);
    }
}

void pack(archive* writer, archive_entry* entry, int folder, const char* name,
          const std::string& path) {
    struct stat status{};
    require(fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0);
    const int file = openat(folder, name, O_RDONLY | O_CLOEXEC);
    require(file >= 0);
    archive_entry_clear(entry);
    archive_entry_copy_pathname(entry, path.c_str());
    archive_entry_set_perm(entry, status.st_mode & 07777U);
    archive_entry_set_mtime(entry, status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
    archive_entry_set_filetype(entry, status.st_mode & S_IFMT);
    archive_entry_set_size(entry, S_ISDIR(status.st_mode) ? 0 : status.st_size);
    require(archive_write_header(writer, entry) == ARCHIVE_OK);
    if (!S_ISDIR(status.st_mode)) {
        copyData(writer, file);
        close(file);
        return;
    }
    DIR* entries = fdopendir(file);
    while (const auto* item = readdir(entries)) {
        const std::string_view itemName(item->d_name);
        if (itemName != "." && itemName != "..")
            pack(writer, entry, file, item->d_name, path + "/" + item->d_name);
    }
    closedir(entries);
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 5)
        return 2;
    require(std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr);
    const char* target = arguments[3];
    const std::string source(arguments[4]);
    auto* writer = archive_write_new();
    configure(writer, arguments[1], arguments[2]);
    require(archive_write_open_filename(writer, target) == ARCHIVE_OK);
    auto* entry = archive_entry_new();
    pack(writer, entry, AT_FDCWD, source.c_str(), source.substr(source.rfind('/') + 1));
    require(archive_write_close(writer) == ARCHIVE_OK);
    archive_entry_free(entry);
    archive_write_free(writer);
    const int made = open(target, O_RDONLY | O_CLOEXEC);
    require(made >= 0 && fsync(made) == 0);
    return 0;
}
