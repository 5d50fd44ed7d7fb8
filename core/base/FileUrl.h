#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace fennik {

/// The place of one item: an absolute path in bytes, and whether it is written in the form of a
/// directory (with a trailing separator). The bytes are taken as they are: no encoding is assumed
/// and nothing on the disk is asked.
class FileUrl {
public:
    enum class Form { file, directory };

    /// The root folder.
    FileUrl();
    /// `path` has to be absolute. A trailing separator makes the directory form, and is not kept in
    /// `path()`; runs of separators are kept, as only `standardized` changes a path.
    explicit FileUrl(std::string path, Form form = Form::file);

    /// The path without a trailing separator; "/" for the root.
    const std::string& path() const { return path_; }
    bool hasDirectoryForm() const { return form_ == Form::directory; }
    bool isRoot() const { return path_ == "/"; }

    /// The bytes after the last separator; "/" for the root.
    std::string_view lastComponent() const;
    /// The URL without its last component, in directory form; the root is its own parent.
    FileUrl parent() const;
    FileUrl appending(std::string_view name, Form form = Form::file) const;
    /// The same place with "." and empty components removed and ".." taken back, as text alone:
    /// links are not followed, and ".." above the root stays at the root.
    FileUrl standardized() const;

    friend bool operator==(const FileUrl&, const FileUrl&) = default;
    friend auto operator<=>(const FileUrl&, const FileUrl&) = default;

private:
    std::string path_;
    Form form_;
};

} // namespace fennik

template <>
struct std::hash<fennik::FileUrl> {
    std::size_t operator()(const fennik::FileUrl& url) const noexcept;
};
