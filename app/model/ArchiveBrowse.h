#pragma once

#include "core/archives/ArchiveIndex.h"
#include "core/base/FileUrl.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace fennik::app {

/// An archive whose inside a panel shows in place of a folder.
struct ArchiveBrowse {
    std::shared_ptr<const ArchiveIndex> index = {}; ///< never null where a panel shows it
    std::string inner = {};                         ///< the folder that is shown; "" is the root
    std::optional<std::string> password = {};       ///< once the user has given it
    /// Where the user sees the archive. That of one inside another leads through the outer one, and
    /// `index->url()` is then its temporary copy.
    FileUrl place = {};
    /// Of an archive inside another: what held it, and is shown again when it is left.
    std::shared_ptr<const ArchiveBrowse> outer = {};
    /// Keeps the temporary copy.
    std::shared_ptr<const void> copy = {};

    /// The folder that is shown, as a path that leads through the archive. No such file exists.
    FileUrl location() const { return inner.empty() ? place : place.appending(inner); }
    /// The archive that lies in a folder.
    const ArchiveBrowse& outermost() const { return outer ? outer->outermost() : *this; }
};

namespace ArchiveTexts {

inline constexpr std::string_view isReadOnly = "Archiv je jen pro čtení.";
inline constexpr std::string_view takesNothing = "Do archivu nejde nic přidat, je jen pro čtení.";

} // namespace ArchiveTexts

} // namespace fennik::app
