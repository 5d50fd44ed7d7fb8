#include "app/main/PictureFile.h"

#include "core/base/CzechText.h"
#include "core/base/FileUrl.h"
#include "core/base/PosixError.h"

#include <QBuffer>
#include <QImageReader>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
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

bool mayBeReplaced(const std::string& path) {
    struct stat info{};
    if (lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    if (info.st_size == 0)
        return true;
    const QImageReader reader(QString::fromLocal8Bit(path.c_str()), "png");
    return reader.text(signatureKey) == signature;
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
    image.save(&buffer, "PNG");

    auto written = writeNew(path, bytes);
    if (written)
        return {};
    if (written.error().code != EEXIST)
        return std::unexpected(couldNot(path, written.error()));
    if (!mayBeReplaced(path))
        return std::unexpected("Soubor " + quoted(FileUrl(path).lastComponent()) +
                               " už existuje a Fennik ho nepřepíše.");
    const auto fresh = path + ".fennik-" + std::to_string(getpid());
    written = writeNew(fresh, bytes);
    if (!written)
        return std::unexpected(couldNot(path, written.error()));
    if (rename(fresh.c_str(), path.c_str()) == 0)
        return {};
    const PosixError error{errno};
    unlink(fresh.c_str());
    return std::unexpected(couldNot(path, error));
}

} // namespace fennik::app
