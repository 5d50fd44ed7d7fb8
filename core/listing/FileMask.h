#pragma once

#include "core/listing/FileItem.h"
#include "core/listing/NamePattern.h"

#include <string_view>
#include <vector>

namespace fennik {

/// Masks as the user writes them, several of them with ";" between. A mask is a shell pattern
/// without regard to case; one that ends in "/" matches only what opens as a folder, and "*.*"
/// matches all names, also those without a dot. A byte of a name that is not valid UTF-8 counts as
/// the character U+FFFD. Immutable, and so safe on any thread.
class FileMask {
public:
    /// Every text is a mask; one with nothing between its semicolons matches nothing.
    explicit FileMask(std::string_view text);

    /// Whether any of the masks matches; the parent entry never does. Linear in the length of the
    /// name, times the number of masks.
    bool matches(const FileItemView& item) const;

private:
    struct Piece {
        NamePattern pattern;
        bool isForFolders = false;
    };
    std::vector<Piece> pieces_;
};

} // namespace fennik
