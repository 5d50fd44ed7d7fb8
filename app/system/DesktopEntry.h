#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::system {

/// An application as its desktop entry describes it (freedesktop.org, version 1.5).
struct DesktopEntry {
    std::string name = {};               ///< Czech where there is one
    std::string exec = {};               ///< the command with its field codes
    std::string tryExec = {};            ///< a program that has to be there; may be empty
    std::string icon = {};               ///< may be empty
    std::string folder = {};             ///< where it is to work; may be empty
    bool inTerminal = false;             ///< it needs one around it
    std::vector<std::string> types = {}; ///< of the files that it opens
    std::string file = {};               ///< where it was read, a path

    /// None: the text describes no application that can be started, or a hidden one.
    static std::optional<DesktopEntry> parse(std::string_view text, std::string file);

    /// The program and its arguments for one file, by its path in any bytes. Empty where the
    /// command makes no sense.
    std::vector<std::string> command(const std::string& path) const;
};

/// The words of a command as desktop entries quote them, without field codes of any meaning. None:
/// a quote has no end.
std::optional<std::vector<std::string>> commandWords(std::string_view command);

/// Calls `take` with the key and the value of each line in a group of a file of that kind. Keys
/// with a locale have it in brackets.
void forEachValue(std::string_view text, std::string_view group,
                  const std::function<void(std::string_view key, std::string_view value)>& take);

/// The parts between separators; empty ones are left out.
std::vector<std::string> partsOf(std::string_view text, char separator);

} // namespace fennik::system
