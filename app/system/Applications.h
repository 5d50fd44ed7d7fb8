#pragma once

#include "app/system/DesktopEntry.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::system {

/// The applications of the desktop and what they open, as they are at one moment: the entries in
/// the folders of XDG_DATA_HOME and XDG_DATA_DIRS, and the user's choices among them (Association
/// between MIME types and applications, freedesktop.org, 1.0). Waits for the disk; used on workers.
class Applications {
public:
    Applications();

    /// The one of that identifier, with ".desktop" at its end or without; none where there is no
    /// such one, or it cannot be started.
    std::optional<DesktopEntry> named(std::string_view identifier) const;
    /// The one that the user, or else the desktop, has chosen for the type; or any that opens it,
    /// rather with a window of its own than in a terminal. Types are tried in their order, the most
    /// special one first.
    std::optional<DesktopEntry> defaultFor(const std::vector<std::string>& types) const;
    /// All that open the type, by identifier.
    std::map<std::string, DesktopEntry> allFor(const std::string& type) const;

private:
    struct Choices {
        std::vector<std::string> chosen = {};
        std::vector<std::string> added = {};
        std::vector<std::string> removed = {};
    };
    Choices choicesFor(const std::string& type) const;
    std::optional<DesktopEntry> anyFor(const std::string& type,
                                       const std::vector<std::string>& removed) const;

    std::vector<std::string> dataFolders_;
    std::map<std::string, std::string, std::less<>> files_; ///< by identifier
    std::vector<std::string> lists_; ///< what the files of choices contain, the first one first
};

} // namespace fennik::system
