#pragma once

#include "core/listing/FileItem.h"

#include <string>
#include <utility>

namespace fennik::app {

/// An item of which nothing is known but its place.
inline FileItem itemAt(FileUrl url, FileKind kind) {
    FileItem item;
    item.name = std::string(url.lastComponent());
    item.url = std::move(url);
    item.kind = kind;
    return item;
}

} // namespace fennik::app
