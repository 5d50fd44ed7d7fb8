#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::system {

/// An application as its desktop entry describes it (Desktop Entry Specification of
/// freedesktop.org, 1.5).
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
template <class Take>
void forEachValue(std::string_view text, std::string_view group, Take take) {
    bool isInGroup = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        auto line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        while (!line.empty() && (line.back() == '\r' || line.back() == ' '))
            line.remove_suffix(1);
        const auto equals = line.find('=');
        if (line.starts_with('[')) {
            isInGroup = line.size() == group.size() + 2 && line.substr(1, group.size()) == group;
        } else if (isInGroup && !line.starts_with('#') && equals != std::string_view::npos) {
            auto key = line.substr(0, equals);
            auto value = line.substr(equals + 1);
            while (key.ends_with(' '))
                key.remove_suffix(1);
            while (value.starts_with(' '))
                value.remove_prefix(1);
            take(key, value);
        }
    }
}

/// The parts of a value that is a list; empty ones are left out.
std::vector<std::string> listOf(std::string_view value);

} // namespace fennik::system
