#pragma once

#include "app/model/ports/PreviewDecoder.h"
#include "core/listing/FileItems.h"
#include "core/listing/FileSorter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace fennik::app {

/// There is nothing to be shown of an item.
struct PreviewNothing {
    std::string reason = {}; ///< a sentence; empty where it is the item's kind alone
};

/// The beginning of a text.
struct PreviewText {
    std::string text = {};    ///< UTF-8 with line feeds and tabs, and no other controls
    std::string charset = {}; ///< that it was written in: "UTF-8"
    bool isCut = false;       ///< the file goes on
};

/// The first bytes of a file.
struct PreviewBytes {
    std::vector<std::byte> bytes = {};
    bool isCut = false;
};

/// What lies in a folder or an archive.
struct PreviewList {
    FileItems items = {};
    FolderSizes folderSizes = {};             ///< as far as they are known
    std::optional<std::int64_t> folders = {}; ///< none: only the files are counted
    std::int64_t files = 0;
    std::int64_t bytes = 0; ///< of the files that are counted
};

using PreviewContent = std::variant<PreviewNothing, PreviewText, PreviewBytes, PreviewList,
                                    DecodedPicture, DecodedMedia>;

} // namespace fennik::app
