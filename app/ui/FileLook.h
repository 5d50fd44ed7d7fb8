#pragma once

#include "core/listing/FileItem.h"

#include <QString>

namespace fennik::ui {

/// The kinds of items that the interface tells apart by icon and by word.
enum class FileLook {
    up,
    folder,
    package,
    archive,
    image,
    audio,
    video,
    pdf,
    sheet,
    text,
    code,
    file,
    other,
};

/// By what the item is and by its extension; a link looks like a plain file or folder.
FileLook lookOf(const FileItemView& item);

/// The name of the icon of a look.
QString iconName(FileLook look);

/// What the item is, in words: "dokument PDF", "odkaz na složku".
QString kindText(const FileItemView& item);

/// The same as a value of its own, as exact as its extension allows: "Obrázek JPEG", "Archiv ZIP".
QString kindTitle(const FileItemView& item);

} // namespace fennik::ui
