#include "app/system/Applications.h"

#include "core/base/AsciiText.h"
#include "core/platform/DetachedProgram.h"
#include "core/platform/UserFolders.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fennik::system {

namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr ? value : "";
}

/// The user's own folder, and then those of the system. Only absolute ones count.
std::vector<std::string> foldersOf(const char* own, const std::string& ownDefault,
                                   const char* others, const std::string& othersDefault) {
    const auto home = variable(own);
    std::vector<std::string> folders{
        home.starts_with('/') ? home : UserFolders::home().path() + ownDefault};
    const auto listed = variable(others);
    for (auto& folder : partsOf(listed.empty() ? othersDefault : listed, ':')) {
        if (folder.starts_with('/'))
            folders.push_back(std::move(folder));
    }
    return folders;
}

std::string contentOf(const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        return {};
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Whether it can be started at all.
bool isInstalled(const DesktopEntry& entry) {
    if (!entry.tryExec.empty() && !DetachedProgram::find(entry.tryExec))
        return false;
    const auto words = commandWords(entry.exec);
    return words && !words->empty() && DetachedProgram::find(words->front());
}

} // namespace

Applications::Applications() {
    dataFolders_ =
        foldersOf("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (const auto& folder : dataFolders_) {
        const fs::path root(folder + "/applications");
        std::error_code error;
        fs::recursive_directory_iterator entries(
            root, fs::directory_options::skip_permission_denied, error);
        for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
            if (entries->path().extension() != ".desktop")
                continue;
            // Folders are part of the identifier.
            auto identifier = entries->path().lexically_relative(root).string();
            std::ranges::replace(identifier, '/', '-');
            files_.try_emplace(std::move(identifier), entries->path().string());
        }
    }
    std::vector<std::string> places =
        foldersOf("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
    for (const auto& folder : dataFolders_)
        places.push_back(folder + "/applications");
    for (const auto& place : places) {
        // Each desktop may have choices of its own.
        for (const auto& desktop : partsOf(variable("XDG_CURRENT_DESKTOP"), ':'))
            lists_.push_back(contentOf(place + "/" + asciiLowered(desktop) + "-mimeapps.list"));
        lists_.push_back(contentOf(place + "/mimeapps.list"));
    }
    std::erase(lists_, "");
}

std::optional<DesktopEntry> Applications::named(std::string_view identifier) const {
    auto found = files_.find(identifier);
    if (found == files_.end())
        found = files_.find(std::string(identifier) + ".desktop");
    if (found == files_.end())
        return std::nullopt;
    auto entry = DesktopEntry::parse(contentOf(found->second), found->second);
    return entry && isInstalled(*entry) ? entry : std::nullopt;
}

Applications::Choices Applications::choicesFor(const std::string& type) const {
    Choices choices;
    for (const auto& list : lists_) {
        const auto take = [&](std::string_view group, std::vector<std::string>& into) {
            forEachValue(list, group, [&](std::string_view key, std::string_view value) {
                if (key == type)
                    std::ranges::move(partsOf(value, ';'), std::back_inserter(into));
            });
        };
        take("Default Applications", choices.chosen);
        take("Added Associations", choices.added);
        take("Removed Associations", choices.removed);
    }
    return choices;
}

std::optional<DesktopEntry> Applications::defaultFor(const std::vector<std::string>& types) const {
    for (const auto& type : types) {
        const auto choices = choicesFor(type);
        for (const auto* identifiers : {&choices.chosen, &choices.added}) {
            for (const auto& identifier : *identifiers) {
                if (auto entry = named(identifier))
                    return entry;
            }
        }
        if (auto entry = anyFor(type, choices.removed))
            return entry;
    }
    return std::nullopt;
}

std::map<std::string, DesktopEntry> Applications::allFor(const std::string& type) const {
    std::map<std::string, DesktopEntry> all;
    for (const auto& [identifier, file] : files_) {
        auto entry = DesktopEntry::parse(contentOf(file), file);
        if (entry && std::ranges::find(entry->types, type) != entry->types.end() &&
            isInstalled(*entry))
            all.emplace(identifier, std::move(*entry));
    }
    return all;
}

std::optional<DesktopEntry> Applications::anyFor(const std::string& type,
                                                 const std::vector<std::string>& removed) const {
    std::optional<DesktopEntry> inTerminal;
    for (const auto& [identifier, file] : files_) {
        if (std::ranges::find(removed, identifier) != removed.end())
            continue;
        auto entry = DesktopEntry::parse(contentOf(file), file);
        if (!entry || std::ranges::find(entry->types, type) == entry->types.end() ||
            !isInstalled(*entry))
            continue;
        if (!entry->inTerminal)
            return entry;
        if (!inTerminal)
            inTerminal = std::move(entry);
    }
    return inTerminal;
}

} // namespace fennik::system
