// The least that copies a file or a tree on one thread, with modes and times and with holes:
//   bare_copy SOURCE TARGET
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr off_t chunk = 8L << 20;
constexpr off_t small = 64L << 10;

void require(bool succeeded) {
    if (!succeeded)
        std::abort();
}

void copyRange(int from, int to, off_t begin, off_t end) {
    auto in = begin;
    auto out = begin;
    while (in < end)
        require(copy_file_range(from, &in, to, &out,
                                static_cast<std::size_t>(std::min(chunk, end - in)), 0) > 0);
}

void copyData(int from, int to, const struct stat& status) {
    if (status.st_size <= small) {
        std::array<char, small> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
        const auto length = read(from, buffer.data(), buffer.size());
        require(length >= 0 &&
                write(to, buffer.data(), static_cast<std::size_t>(length)) == length);
        return;
    }
    if (ioctl(to, FICLONE, from) == 0)
        return;
    if (status.st_blocks * 512 >= status.st_size)
        return copyRange(from, to, 0, status.st_size);
    for (off_t begin = 0; (begin = lseek(from, begin, SEEK_DATA)) >= 0;) {
        const auto end = lseek(from, begin, SEEK_HOLE);
        copyRange(from, to, begin, end);
        begin = end;
    }
    require(ftruncate(to, status.st_size) == 0);
}

void finish(int target, const struct stat& status) {
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    require(fchmod(target, status.st_mode & 07777U) == 0 && futimens(target, times.data()) == 0);
}

void copy(int fromFolder, const char* name, int toFolder, const char* newName) {
    struct stat status{};
    const int from = openat(fromFolder, name, O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    require(from >= 0 && fstat(from, &status) == 0);
    int to = -1;
    if (S_ISDIR(status.st_mode)) {
        require(mkdirat(toFolder, newName, 0700) == 0);
        to = openat(toFolder, newName, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR* entries = fdopendir(dup(from));
        while (const auto* entry = readdir(entries))
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
                copy(from, entry->d_name, to, entry->d_name);
        closedir(entries);
    } else {
        to = openat(toFolder, newName, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        require(to >= 0);
        copyData(from, to, status);
    }
    finish(to, status);
    close(to);
    close(from);
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    copy(AT_FDCWD, arguments[1], AT_FDCWD, arguments[2]);
    return 0;
}
