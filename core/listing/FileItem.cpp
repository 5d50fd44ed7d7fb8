#include "core/listing/FileItem.h"

#include <initializer_list>

namespace fennik {

bool FileItemView::opensAsFolder() const {
    if (kind == FileKind::directory)
        return true;
    return linksToDirectory && isLink();
}

bool FileItemView::isFolderLike() const {
    return kind == FileKind::directory || kind == FileKind::package || linksToDirectory;
}

std::optional<std::string_view> FileItemView::fileExtension() const {
    if (kind == FileKind::directory || isParentLink)
        return std::nullopt;
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size())
        return std::nullopt;
    return name.substr(dot + 1);
}

std::string_view FileItemView::baseName() const {
    const auto extension = fileExtension();
    return extension ? name.substr(0, name.size() - extension->size() - 1) : name;
}

FileUrl::Form urlForm(FileKind kind) {
    const bool isDirectory = kind == FileKind::directory || kind == FileKind::package;
    return isDirectory ? FileUrl::Form::directory : FileUrl::Form::file;
}

FileItem FileItem::parentEntry(const FileUrl& folder) {
    FileItem item;
    item.name = "..";
    item.url = folder.parent();
    item.kind = Kind::directory;
    item.mode = 0755;
    item.isParentLink = true;
    return item;
}

FileItemView FileItem::view() const {
    return {.name = name,
            .kind = kind,
            .linksToDirectory = linksToDirectory,
            .isHidden = isHidden,
            .size = size,
            .modified = modified,
            .mode = mode,
            .isParentLink = isParentLink,
            .aliasTarget = aliasTarget ? &*aliasTarget : nullptr};
}

std::optional<std::string> FileItem::fileExtension() const {
    const auto extension = view().fileExtension();
    return extension ? std::optional(std::string(*extension)) : std::nullopt;
}

} // namespace fennik

std::size_t std::hash<fennik::FileItem>::operator()(const fennik::FileItem& item) const noexcept {
    std::size_t result = std::hash<std::string>()(item.name);
    const auto mix = [&result](std::size_t value) { result = result * 1099511628211U + value; };
    mix(std::hash<fennik::FileUrl>()(item.url));
    for (const auto number :
         {static_cast<std::int64_t>(item.kind), std::int64_t{item.linksToDirectory},
          std::int64_t{item.isHidden}, item.size, item.modified.seconds,
          std::int64_t{item.modified.nanoseconds}, std::int64_t{item.mode},
          std::int64_t{item.isParentLink}})
        mix(std::hash<std::int64_t>()(number));
    mix(item.aliasTarget ? std::hash<fennik::FileUrl>()(*item.aliasTarget) : 0);
    return result;
}
