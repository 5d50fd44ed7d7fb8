#include "app/system/Terminals.h"

#include "core/platform/DetachedProgram.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace fennik::system::Terminals {

namespace {

struct Terminal {
    std::string_view program = {};
    /// Before the folder, for one that is a window of a program that works elsewhere.
    std::string_view folderOption = {};
    std::string_view commandOption = "-e"; ///< before a command; empty: nothing
};

/// The first two know what the user, or else the system, has chosen; those of whole desktops come
/// before those that somebody has installed beside them, and what many systems have comes last.
constexpr std::array<Terminal, 26> known{{
    {"xdg-terminal-exec", "", ""},
    {"x-terminal-emulator", "", "-e"},
    {"ptyxis", "--new-window --working-directory=", "--"},
    {"kgx", "--working-directory=", "--"},
    {"gnome-terminal", "--working-directory=", "--"},
    {"konsole", "", "-e"},
    {"xfce4-terminal", "--working-directory=", "-x"},
    {"mate-terminal", "--working-directory=", "-x"},
    {"lxterminal", "--working-directory=", "-e"},
    {"qterminal", "", "-e"},
    {"deepin-terminal", "", "-e"},
    {"io.elementary.terminal", "--working-directory=", "-x"},
    {"cosmic-term", "", "--"},
    {"tilix", "--working-directory=", "-e"},
    {"terminator", "--working-directory=", "-x"},
    {"kitty", "", ""},
    {"foot", "", ""},
    {"alacritty", "", "-e"},
    {"wezterm", "start --cwd=", "--"},
    {"ghostty", "", "-e"},
    {"terminology", "", "-e"},
    {"sakura", "", "-e"},
    {"urxvt", "", "-e"},
    {"st", "", "-e"},
    {"xterm", "", "-e"},
    {"uxterm", "", "-e"},
}};

std::vector<std::string> wordsFor(const std::string& program, const Terminal& terminal,
                                  const std::string& folder,
                                  const std::vector<std::string>& command) {
    std::vector<std::string> words{program};
    auto options = terminal.folderOption;
    for (auto blank = options.find(' '); blank != std::string_view::npos;
         blank = options.find(' ')) {
        words.emplace_back(options.substr(0, blank));
        options.remove_prefix(blank + 1);
    }
    if (!options.empty())
        words.push_back(std::string(options) + folder);
    if (!command.empty() && !terminal.commandOption.empty())
        words.emplace_back(terminal.commandOption);
    words.insert(words.end(), command.begin(), command.end());
    return words;
}

} // namespace

std::optional<std::vector<std::string>> opening(const std::string& folder,
                                                const std::vector<std::string>& command) {
    const auto tried = [&](std::string_view name) -> std::optional<std::vector<std::string>> {
        const auto program = DetachedProgram::find(name);
        if (!program)
            return std::nullopt;
        const auto base = name.substr(name.rfind('/') + 1);
        const auto* found = std::ranges::find(known, base, &Terminal::program);
        return wordsFor(*program, found == known.end() ? Terminal{} : *found, folder, command);
    };
    if (auto words = tried(known.front().program))
        return words;
    if (const char* chosen = std::getenv("TERMINAL")) { // NOLINT(concurrency-mt-unsafe)
        if (auto words = tried(chosen))
            return words;
    }
    for (const auto& terminal : known) {
        if (auto words = tried(terminal.program))
            return words;
    }
    return std::nullopt;
}

} // namespace fennik::system::Terminals
