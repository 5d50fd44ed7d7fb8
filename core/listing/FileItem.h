#pragma once

#include "core/base/Date.h"
#include "core/base/FileUrl.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fennik {

/// What an entry itself is, without following links.
enum class FileKind : std::uint8_t {
    file,      ///< a regular file
    directory, ///< a directory that is not a package
    package,   ///< a directory that is shown and sorted like a file, by its extension
    symlink,
    other, ///< devices, sockets, pipes and entries whose type is not known
};

/// The fields of a `FileItem` without owning them, with all that can be derived from them. Cheap to
/// make and to pass; valid as long as the list or the item it was taken from.
struct FileItemView {
    std::string_view name;
    FileKind kind = FileKind::file;
    bool linksToDirectory = false;
    bool isHidden = false;
    std::int64_t size = 0;
    Date modified = Date::distantPast();
    std::uint16_t mode = 0;
    bool isParentLink = false;
    const FileUrl* aliasTarget = nullptr; ///< absent: nullptr

    /// Whether entering the item shows a folder. A package does not.
    bool opensAsFolder() const;
    bool isLink() const { return kind == FileKind::symlink || aliasTarget != nullptr; }
    /// Folders, packages and links to folders.
    bool isFolderLike() const;
    /// The bytes after the last dot of the name; none for directories, for names whose only dot
    /// is the first byte, and for names that end in a dot.
    std::optional<std::string_view> fileExtension() const;
    /// The name without dot and extension.
    std::string_view baseName() const;
};

/// One entry of a listing: a value. Within one listing the name is the identity.
struct FileItem {
    using Kind = FileKind;

    std::string name; ///< the bytes of the file system, not normalised; ".." for the parent entry
    FileUrl url;      ///< in directory form for directories and packages
    Kind kind = Kind::file;
    bool linksToDirectory = false; ///< a link or alias whose final target is a directory
    bool isHidden = false;         ///< by the system's flag or by a leading dot
    std::int64_t size = 0;         ///< bytes of data; 0 for a plain directory
    Date modified = Date::distantPast();
    std::uint16_t mode = 0; ///< the low 12 bits of the mode
    bool isParentLink = false;
    std::optional<FileUrl> aliasTarget; ///< where an alias file leads

    /// The entry ".." that leads out of `folder`.
    static FileItem parentEntry(const FileUrl& folder);

    const std::string& id() const { return name; }
    FileItemView view() const;

    const FileUrl& resolvedURL() const { return aliasTarget ? *aliasTarget : url; }
    bool opensAsFolder() const { return view().opensAsFolder(); }
    bool isLink() const { return view().isLink(); }
    bool isFolderLike() const { return view().isFolderLike(); }
    std::optional<std::string> fileExtension() const;
    std::string baseName() const { return std::string(view().baseName()); }

    friend bool operator==(const FileItem&, const FileItem&) = default;
};

/// The form of the URL of an entry of this kind.
FileUrl::Form urlForm(FileKind kind);

} // namespace fennik

template <>
struct std::hash<fennik::FileItem> {
    std::size_t operator()(const fennik::FileItem& item) const noexcept;
};
