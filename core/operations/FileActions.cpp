#include "core/operations/FileActions.h"

#include "core/base/CurrentDate.h"
#include "core/base/CzechText.h"
#include "core/base/FoldedText.h"
#include "core/base/WhiteSpace.h"
#include "core/platform/MadeFolders.h"

#include <cerrno>
#include <cstdint>
#include <utility>

namespace fennik::FileActions {

namespace {

std::unexpected<Failure> failure(std::string sentence) {
    return std::unexpected(Failure{std::move(sentence)});
}

void record(UndoJournal& journal, std::string title, UndoStepList steps) {
    journal.record({.title = std::move(title), .steps = std::move(steps), .date = currentDate()});
}

OpenFolder::Result<void> renamed(const FileUrl& item, const std::string& newName) {
    const auto folder = OpenFolder::open(item.parent().path(), FollowLinks::yes);
    if (!folder)
        return std::unexpected(folder.error());
    const std::string name(item.lastComponent());
    auto done = renameExclusively(*folder, name, *folder, newName);
    const bool isTaken = !done && done.error().code == EEXIST;
    // Where case does not count, the name may be taken by the very item.
    if (isTaken && foldedText(name) == foldedText(newName))
        return renameWithinCase(*folder, name, newName);
    return done;
}

} // namespace

std::expected<std::string, Failure> validateName(std::string_view text) {
    const auto name = trimmed(text);
    if (name.empty() || name == "." || name == "..")
        return failure("Zadejte název.");
    if (name.contains(':'))
        return failure("Název nesmí obsahovat dvojtečku.");
    return std::string(name);
}

std::expected<FileUrl, Failure> rename(const FileUrl& item, std::string_view name,
                                       UndoJournal& journal) {
    // Its own name is an item's to keep, whatever it consists of.
    if (name == item.lastComponent())
        return item;
    const auto newName = validateName(name);
    if (!newName)
        return std::unexpected(newName.error());
    if (newName->contains('/'))
        return failure("Název nesmí obsahovat „/“.");
    if (*newName == item.lastComponent())
        return item;
    if (const auto done = renamed(item, *newName); !done) {
        if (done.error().code == EEXIST)
            return failure(quoted(*newName) + " už ve složce je.");
        return failure(quoted(item.lastComponent()) +
                       " nejde přejmenovat: " + done.error().reason());
    }
    const auto form = item.hasDirectoryForm() ? FileUrl::Form::directory : FileUrl::Form::file;
    auto target = item.parent().appending(*newName, form);
    record(journal, "Přejmenování na " + quoted(*newName), {UndoSteps::Moved{item, target}});
    return target;
}

std::expected<FileUrl, Failure> folderNamed(const FileUrl& directory, std::string_view name) {
    auto url = directory;
    while (!name.empty()) {
        const auto slash = name.find('/');
        const auto level = name.substr(0, slash);
        name = slash == std::string_view::npos ? std::string_view() : name.substr(slash + 1);
        if (level.empty())
            continue;
        const auto levelName = validateName(level);
        if (!levelName)
            return std::unexpected(levelName.error());
        url = url.appending(*levelName, FileUrl::Form::directory);
    }
    if (url.path() == directory.path())
        return std::unexpected(validateName({}).error());
    return url;
}

std::expected<FileUrl, Failure> newFolder(const FileUrl& directory, std::string_view name,
                                          UndoJournal& journal) {
    const auto text = validateName(name);
    if (!text)
        return std::unexpected(text.error());
    const auto url = folderNamed(directory, *text);
    if (!url)
        return url;
    const auto exists = [&] { return failure("Složka " + quoted(*text) + " už existuje."); };
    if (systemFileSystem().status(url->path(), FollowLinks::no))
        return exists();
    const auto folders = MadeFolders::make(*url);
    if (!folders)
        return failure("Složku " + quoted(*text) + " nejde vytvořit: " + folders.error().reason());
    const auto& made = folders->made();
    if (made.empty() || made.back() != *url) {
        folders->takeBack();
        return exists();
    }
    record(journal, "Nová složka " + quoted(*text), {UndoSteps::Created{made.front()}});
    return url;
}

Trashing trash(const std::vector<FileUrl>& items, const TrashProvider& trash,
               UndoJournal& journal) {
    Trashing result;
    UndoStepList steps;
    for (const auto& item : items) {
        auto place = trash.trash(item);
        if (place) {
            steps.push_back(UndoSteps::Trashed{item, std::move(*place)});
            result.trashed.push_back(item);
        } else {
            result.failures.push_back(quoted(item.lastComponent()) +
                                      " nejde přesunout do Koše: " + place.error());
        }
    }
    const auto& trashed = result.trashed;
    auto title = trashed.size() == 1
                     ? "Přesun do Koše " + quoted(trashed.front().lastComponent())
                     : "Přesun " + std::to_string(trashed.size()) + " položek do Koše";
    record(journal, std::move(title), std::move(steps));
    return result;
}

} // namespace fennik::FileActions
