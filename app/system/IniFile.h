#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include <expected>
#include <string>

namespace fennik::system {

/// The file "Fennik/Fennik.conf" in the folder of the user's configuration, in the toolkit's INI
/// format: named values, all in one group. It is replaced as a whole: the new file is on the disk
/// before it takes the name of the old one, so that whoever reads, and whenever the machine stops,
/// finds one of the two. Used by one thread at a time.
class IniFile {
public:
    using Values = QMap<QString, QVariant>;

    /// `configFolder` is an absolute path in bytes. It need not exist, but the folder around it.
    explicit IniFile(std::string configFolder);

    /// What there is to be read; empty without a file. Texts come as QString, QStringList and
    /// QByteArray; an empty list as an invalid QVariant.
    Values read() const;

    /// What those values of the file are to us that `merge` replaces.
    enum class Content { understood, notUnderstood };

    /// Puts `changes` into the file and leaves all other values as they are by now, those of
    /// another running Fennik too. Before a file with lines that cannot be read, or values that
    /// are not understood, is replaced, a copy of it is kept beside it, as "Fennik.conf.damaged",
    /// "Fennik.conf.damaged-2" and so on. On failure the file is as before; then the reason comes
    /// back, a Czech clause with a full stop. Waits for the disk and for another Fennik that is
    /// writing.
    std::expected<void, std::string> merge(const Values& changes, Content content) const;

private:
    std::expected<void, std::string> keepCopy(const QByteArray& bytes) const;
    std::string failure() const;

    std::string configFolder_;
    std::string folder_;
    std::string path_;
};

} // namespace fennik::system
