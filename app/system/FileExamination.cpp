#include "app/system/FileExamination.h"

#include "core/base/CzechText.h"
#include "core/base/DisplayText.h"
#include "core/base/PosixError.h"

#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace fennik::system {

namespace {

constexpr std::size_t enoughBytes = 16 * 1024; // for any magic number

/// Files of these types are run by what is there to open them, rights or not.
constexpr std::array<std::string_view, 13> programTypes{
    "application/vnd.appimage",
    "application/x-desktop",
    "application/x-executable",
    "application/x-iso9660-appimage",
    "application/x-java",
    "application/x-java-archive",
    "application/x-java-jnlp-file",
    "application/x-ms-dos-executable",
    "application/x-ms-shortcut",
    "application/x-msdownload",
    "application/x-msi",
    "application/x-pie-executable",
    "application/vnd.microsoft.portable-executable",
};

class OpenFile {
public:
    explicit OpenFile(const std::string& path)
        : number_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}
    ~OpenFile() {
        if (number_ >= 0)
            close(number_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

std::string sentence(const FileUrl& file, std::string_view reason) {
    return quoted(file.lastComponent()) + " nejde otevřít: " + std::string(reason);
}

std::string reasonOf(const FileUrl& file, int error) {
    struct stat info{};
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        if (lstat(file.path().c_str(), &info) == 0 && S_ISLNK(info.st_mode))
            return sentence(file, "cíl odkazu neexistuje.");
        return sentence(file, "už neexistuje.");
    case EACCES:
    case EPERM:
        return sentence(file, "nemáte k němu přístup.");
    default:
        return sentence(file, PosixError{error}.reason() + ".");
    }
}

QByteArray headOf(int descriptor) {
    QByteArray head(qsizetype(enoughBytes), '\0');
    qsizetype filled = 0;
    while (filled < head.size()) {
        const auto count =
            read(descriptor, head.data() + filled, std::size_t(head.size() - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        filled += count;
    }
    head.truncate(filled);
    return head;
}

bool isProgramType(const QString& type) {
    return std::ranges::any_of(programTypes, [&](std::string_view known) {
        return type == QLatin1String(known.data(), qsizetype(known.size()));
    });
}

} // namespace

std::expected<FileExamination, std::string> FileExamination::of(const FileUrl& file) {
    struct stat info{};
    // Opening a device may do something to it.
    if (stat(file.path().c_str(), &info) != 0)
        return std::unexpected(reasonOf(file, errno));
    if (!S_ISREG(info.st_mode))
        return std::unexpected(sentence(file, "není to obyčejný soubor."));
    const OpenFile opened(file.path());
    if (opened.number() < 0)
        return std::unexpected(reasonOf(file, errno));
    const auto head = headOf(opened.number());

    const QMimeDatabase database;
    const auto name = QString::fromStdString(displayText(file.lastComponent()));
    const auto type = database.mimeTypeForFileNameAndData(name, head);
    FileExamination found;
    found.types_.push_back(type.name().toStdString());
    for (const auto& ancestor : type.allAncestors()) {
        if (ancestor != QStringLiteral("application/octet-stream")) // everything is that
            found.types_.push_back(ancestor.toStdString());
    }
    const bool mayBeRun = (info.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    const bool isBinary = head.startsWith("\x7f"
                                          "ELF");
    const bool isScript =
        head.startsWith("#!") ||
        (mayBeRun && !isBinary && type.inherits(QStringLiteral("application/x-executable")));
    // By its content too, whatever it is called; but words may begin like a program does.
    const bool isDisguised =
        head.contains('\0') && isProgramType(database.mimeTypeForData(head).name());
    if (isProgramType(type.name()) || (isBinary && mayBeRun) || isDisguised)
        found.runs_ = Runs::asProgram;
    else if (isScript)
        found.runs_ = Runs::asScript;
    return found;
}

} // namespace fennik::system
