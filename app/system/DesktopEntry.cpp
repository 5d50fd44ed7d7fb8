#include "app/system/DesktopEntry.h"

#include "core/base/PathText.h"
#include "core/base/WhiteSpace.h"

#include <algorithm>
#include <utility>

namespace fennik::system {

namespace {

/// A value without the escapes of its file.
std::string unescaped(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's':
            text += ' ';
            break;
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case 'r':
            text += '\r';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            text.append({'\\', value[i]}); // the quoting of commands has escapes of its own
            break;
        }
    }
    return text;
}

} // namespace

void forEachValue(std::string_view text, std::string_view group,
                  const std::function<void(std::string_view key, std::string_view value)>& take) {
    bool isInGroup = false;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto equals = line.find('=');
        if (line.starts_with('['))
            isInGroup = line.size() == group.size() + 2 && line.substr(1, group.size()) == group;
        else if (isInGroup && !line.starts_with('#') && equals != std::string_view::npos)
            take(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
}

std::vector<std::string> partsOf(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::optional<std::vector<std::string>> commandWords(std::string_view command) {
    std::vector<std::string> words;
    bool isInWord = false;
    bool isQuoted = false;
    for (std::size_t i = 0; i < command.size(); ++i) {
        const char byte = command[i];
        if (!isQuoted && (byte == ' ' || byte == '\t')) {
            isInWord = false;
            continue;
        }
        if (!std::exchange(isInWord, true))
            words.emplace_back();
        if (byte == '"')
            isQuoted = !isQuoted;
        else if (byte == '\\' && isQuoted && i + 1 < command.size())
            words.back() += command[++i];
        else
            words.back() += byte;
    }
    if (isQuoted)
        return std::nullopt;
    return words;
}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text, std::string file) {
    DesktopEntry entry{.file = std::move(file)};
    std::string czechName;
    bool isApplication = false;
    bool isHidden = false;
    forEachValue(text, "Desktop Entry", [&](std::string_view key, std::string_view value) {
        if (key == "Type")
            isApplication = value == "Application";
        else if (key == "Hidden")
            isHidden = value == "true";
        else if (key == "Name")
            entry.name = unescaped(value);
        else if (key == "Name[cs]")
            czechName = unescaped(value);
        else if (key == "Exec")
            entry.exec = unescaped(value);
        else if (key == "TryExec")
            entry.tryExec = unescaped(value);
        else if (key == "Icon")
            entry.icon = unescaped(value);
        else if (key == "Path")
            entry.folder = unescaped(value);
        else if (key == "Terminal")
            entry.inTerminal = value == "true";
        else if (key == "MimeType")
            entry.types = partsOf(value, ';');
    });
    if (!isApplication || isHidden || entry.exec.empty())
        return std::nullopt;
    if (!czechName.empty())
        entry.name = std::move(czechName);
    return entry;
}

std::vector<std::string> DesktopEntry::command(const std::string& path) const {
    const auto words = commandWords(exec);
    if (!words || words->empty())
        return {};
    std::vector<std::string> command;
    bool hasFile = false;
    for (const auto& word : *words) {
        if (word == "%i") {
            if (!icon.empty())
                command.insert(command.end(), {"--icon", icon});
            continue;
        }
        std::string expanded;
        bool isOnlyCode = word.size() == 2 && word.front() == '%';
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (word[i] != '%' || i + 1 == word.size()) {
                expanded += word[i];
                continue;
            }
            switch (word[++i]) {
            case 'f':
            case 'F':
                expanded += path;
                hasFile = true;
                break;
            case 'u':
            case 'U':
                expanded += "file://" + percentEncoded(path);
                hasFile = true;
                break;
            case 'c':
                expanded += name;
                break;
            case 'k':
                expanded += file;
                break;
            case '%':
                expanded += '%';
                break;
            default: // codes that mean nothing any more
                break;
            }
        }
        if (!expanded.empty() || !isOnlyCode)
            command.push_back(std::move(expanded));
    }
    // Many a command says nothing of the file that it takes.
    if (!hasFile)
        command.push_back(path);
    return command;
}

} // namespace fennik::system
