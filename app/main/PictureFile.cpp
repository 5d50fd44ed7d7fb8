#include "app/main/PictureFile.h"

#include "core/base/CzechText.h"
#include "core/base/FileUrl.h"
#include "core/base/PosixError.h"

#include <QBuffer>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::app {

namespace {

const QString signatureKey = QStringLiteral("Software");
const QString signature = QStringLiteral("Fennik");

std::string couldNot(const std::string& path, PosixError error) {
    return "Obrázek " + quoted(FileUrl(path).lastComponent()) + " nejde uložit: " + error.reason() +
           ".";
}

/// Which file stands at a path, whatever is renamed meanwhile.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// By the text that `writePicture` puts before the pixels.
bool isOwnPicture(std::string_view beginning) {
    using namespace std::string_view_literals;
    return beginning.starts_with("\x89PNG\r\n\x1a\n"sv) &&
           beginning.contains("tEXtSoftware\0Fennik"sv);
}

/// The file at `path`, if it may be replaced. Never waits for a pipe and follows no link.
std::optional<FileIdentity> replaceableFile(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    struct stat info{};
    std::array<char, 1024> beginning{};
    const bool isFile = fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    const auto length = isFile ? read(descriptor, beginning.data(), beginning.size()) : -1;
    close(descriptor);
    const bool mayBeReplaced =
        length == 0 ||
        (length > 0 && isOwnPicture({beginning.data(), static_cast<std::size_t>(length)}));
    return mayBeReplaced ? std::optional(FileIdentity{info.st_dev, info.st_ino}) : std::nullopt;
}

bool stillStandsAt(const std::string& path, const FileIdentity& file) {
    struct stat info{};
    return lstat(path.c_str(), &info) == 0 && FileIdentity{info.st_dev, info.st_ino} == file;
}

/// Creates `path`, which must not exist yet, with these bytes. Removes what it created on failure.
std::expected<void, PosixError> writeNew(const std::string& path, const QByteArray& bytes) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return std::unexpected(PosixError{errno});
    int error = 0;
    for (qsizetype written = 0; written < bytes.size() && error == 0;) {
        const auto length = write(descriptor, bytes.data() + written,
                                  static_cast<std::size_t>(bytes.size() - written));
        if (length >= 0)
            written += length;
        else if (errno != EINTR)
            error = errno;
    }
    if (close(descriptor) != 0 && error == 0)
        error = errno;
    if (error == 0)
        return {};
    unlink(path.c_str());
    return std::unexpected(PosixError{error});
}

} // namespace

std::expected<void, std::string> writePicture(QImage image, const std::string& path) {
    image.setText(signatureKey, signature);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, "PNG"))
        return std::unexpected(couldNot(path, {ENOMEM}));

    auto written = writeNew(path, bytes);
    if (written)
        return {};
    if (written.error().code != EEXIST)
        return std::unexpected(couldNot(path, written.error()));
    const auto replaced = replaceableFile(path);
    if (!replaced)
        return std::unexpected("Soubor " + quoted(FileUrl(path).lastComponent()) +
                               " už existuje a Fennik ho nepřepíše.");
    const auto fresh = path + ".fennik-" + std::to_string(getpid());
    written = writeNew(fresh, bytes);
    if (!written)
        return std::unexpected(couldNot(path, written.error()));
    errno = EEXIST; // somebody else's file has come in between
    if (stillStandsAt(path, *replaced) && rename(fresh.c_str(), path.c_str()) == 0)
        return {};
    const PosixError error{errno};
    unlink(fresh.c_str());
    return std::unexpected(couldNot(path, error));
}

} // namespace fennik::app
