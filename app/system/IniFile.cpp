#include "app/system/IniFile.h"

#include "core/base/CzechText.h"
#include "core/base/FileUrl.h"
#include "core/base/Utf8.h"

#include <QFile>
#include <QSettings>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace fennik::system {

namespace {

constexpr mode_t onlyForTheUser = 0700;

/// The toolkit notices that another process wrote by the size and the time of the file alone, and
/// the clock of file systems moves on in steps of up to 10 ms.
constexpr auto stepOfFileTimes = std::chrono::milliseconds(20);

QString decoded(const std::string& path) {
    return QFile::decodeName(path.c_str());
}

/// Keeps other running Fenniks from writing as long as it lives. Where the file system has no such
/// locks, the toolkit's own lock file does what it can.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder)
        : descriptor_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        int result = 0;
        do
            result = ::flock(descriptor_, LOCK_EX);
        while (result != 0 && errno == EINTR);
        isHeld_ = result == 0;
    }
    ~FolderLock() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool isHeld() const { return isHeld_; }

private:
    int descriptor_;
    bool isHeld_ = false;
};

enum class FileState { missing, regular, somethingElse };

FileState stateOf(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0)
        return FileState::missing;
    return S_ISREG(status.st_mode) ? FileState::regular : FileState::somethingElse;
}

/// Whether the toolkit understands every line; it passes over those that it does not.
bool isWhole(std::string_view bytes) {
    if (!Utf8::isValid(bytes) || bytes.contains('\0'))
        return false;
    while (!bytes.empty()) {
        const auto end = bytes.find('\n');
        if (end == std::string_view::npos)
            return false; // cut off
        const auto line = bytes.substr(0, end);
        bytes.remove_prefix(end + 1);
        if (!line.empty() && line[0] != '[' && line[0] != ';' && !line.contains('='))
            return false;
    }
    return true;
}

std::string reasonFor(int errorCode, const std::string& path) {
    switch (errorCode) {
    case ENOENT:
        return "složka " + fennik::quoted(FileUrl(path).parent().path()) + " neexistuje.";
    case ENOTDIR:
    case EEXIST:
        return fennik::quoted(path) + " není složka.";
    case EACCES:
    case EPERM:
        return "do " + fennik::quoted(path) + " nemáte právo zapisovat.";
    case EROFS:
        return "disk s " + fennik::quoted(path) + " je jen pro čtení.";
    case ENOSPC:
    case EDQUOT:
        return "na disku není místo.";
    default:
        return "do " + fennik::quoted(path) + " se nepodařilo zapsat.";
    }
}

std::expected<void, std::string> makeFolder(const std::string& path) {
    if (::mkdir(path.c_str(), onlyForTheUser) == 0)
        return {};
    const auto errorCode = errno;
    struct stat status{};
    if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
        return {};
    return std::unexpected(reasonFor(errorCode, path));
}

} // namespace

IniFile::IniFile(std::string configFolder)
    : configFolder_(std::move(configFolder)),
      folder_(configFolder_ + "/Fennik"),
      path_(folder_ + "/Fennik.conf") {}

IniFile::Values IniFile::read() const {
    // Opening a pipe would wait for ever.
    if (stateOf(path_) != FileState::regular)
        return {};
    const QSettings ini(decoded(path_), QSettings::IniFormat);
    Values values;
    for (const auto& key : ini.allKeys())
        values.insert(key, ini.value(key));
    return values;
}

std::expected<void, std::string> IniFile::merge(const Values& changes, Content content) const {
    if (auto made = makeFolder(configFolder_); !made)
        return made;
    if (auto made = makeFolder(folder_); !made)
        return made;
    const FolderLock lock(folder_);
    // What a Fennik left behind that was killed would hold the toolkit up for half a minute.
    if (lock.isHeld())
        ::unlink((path_ + ".lock").c_str());
    const auto state = stateOf(path_);
    if (state == FileState::somethingElse)
        return std::unexpected(fennik::quoted(path_) + " není soubor.");
    if (state == FileState::regular) {
        QFile file(decoded(path_));
        if (!file.open(QIODevice::ReadOnly))
            return std::unexpected("soubor " + fennik::quoted(path_) + " nejde přečíst.");
        const auto bytes = file.readAll();
        const std::string_view all(bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (content == Content::notUnderstood || !isWhole(all))
            if (auto kept = keepCopy(bytes); !kept)
                return kept;
    }
    QSettings ini(decoded(path_), QSettings::IniFormat);
    for (const auto& [key, value] : changes.asKeyValueRange())
        ini.setValue(key, value);
    ini.sync();
    if (ini.status() == QSettings::AccessError)
        return std::unexpected(failure());
    std::this_thread::sleep_for(stepOfFileTimes);
    return {};
}

std::expected<void, std::string> IniFile::keepCopy(const QByteArray& bytes) const {
    const auto name = decoded(path_) + QStringLiteral(".damaged");
    for (int number = 1;; ++number) {
        QFile copy(number == 1 ? name : name + u'-' + QString::number(number));
        if (copy.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (copy.write(bytes) == bytes.size() && copy.flush() && ::fsync(copy.handle()) == 0)
                return {};
            auto reason = failure();
            copy.remove();
            return std::unexpected(std::move(reason));
        }
        if (!copy.exists())
            return std::unexpected(failure());
        if (copy.open(QIODevice::ReadOnly) && copy.readAll() == bytes)
            return {}; // kept by an attempt that failed later
    }
}

/// The toolkit does not tell why it could not write.
std::string IniFile::failure() const {
    if (::access(folder_.c_str(), W_OK | X_OK) != 0)
        return reasonFor(errno, folder_);
    if (::access(path_.c_str(), W_OK) != 0 && errno != ENOENT)
        return reasonFor(errno, path_);
    struct statvfs volume{};
    if (::statvfs(folder_.c_str(), &volume) == 0 && volume.f_blocks > 0 && volume.f_bavail == 0)
        return reasonFor(ENOSPC, folder_);
    return reasonFor(0, path_);
}

} // namespace fennik::system
