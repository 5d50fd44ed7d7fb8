#include "app/main/PictureFile.h"

#include "core/base/CzechText.h"
#include "core/base/FileUrl.h"
#include "core/base/PosixError.h"

#include <QBuffer>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <iterator>
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

/// By the text that `writePicture` puts before the pixels. The toolkit's reader would write a line
/// of its own about each file that is no picture.
bool isOwnPicture(const std::string& path) {
    using namespace std::string_view_literals;
    constexpr std::size_t length = 1024;
    std::string beginning(length, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(beginning.data(), std::ssize(beginning));
    beginning.resize(static_cast<std::size_t>(file.gcount()));
    return beginning.starts_with("\x89PNG\r\n\x1a\n"sv) &&
           beginning.contains("tEXtSoftware\0Fennik"sv);
}

bool mayBeReplaced(const std::string& path) {
    struct stat info{};
    if (lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    return info.st_size == 0 || isOwnPicture(path);
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
