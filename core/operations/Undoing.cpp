#include "core/operations/Undoing.h"

#include "core/base/CzechText.h"
#include "core/base/Overloaded.h"
#include "core/operations/Relocation.h"
#include "core/platform/MadeFolders.h"

#include <algorithm>
#include <cerrno>
#include <expected>
#include <ranges>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace fennik {

namespace {

using Undone = std::expected<void, std::string>;

/// Which created items of an entry go to the trash together with a folder that was created too.
class CreatedTrees {
public:
    explicit CreatedTrees(const std::vector<UndoStep>& steps) {
        const auto name = [this](const FileUrl& url) { otherPaths_.push_back(url.path()); };
        for (const auto& step : steps)
            std::visit(
                Overloaded{
                    [&](const UndoSteps::Moved& moved) {
                        name(moved.from);
                        name(moved.to);
                    },
                    [&](const UndoSteps::Created& created) { created_.insert(created.url.path()); },
                    [&](const UndoSteps::Trashed& trashed) {
                        name(trashed.original);
                        name(trashed.inTrash);
                    },
                    [&](const UndoSteps::RemovedEmptyDirectory& removed) { name(removed.url); },
                },
                step);
        std::ranges::sort(otherPaths_);
    }

    /// An item that another kind of step is about, or one below it, does not wait for the folder.
    bool goesWithFolder(const FileUrl& item) const {
        return hasCreatedFolder(item.path()) && !isNamedOtherwise(item.path());
    }

private:
    bool hasCreatedFolder(std::string_view path) const {
        for (auto end = path.rfind('/'); end != 0 && end != std::string_view::npos;
             end = path.rfind('/', end - 1)) {
            const auto folder = path.substr(0, end);
            // One that was put in the place of another does not hold what was made in that one.
            if (created_.contains(folder) && !std::ranges::binary_search(otherPaths_, folder))
                return true;
        }
        return false;
    }
    bool isNamedOtherwise(const std::string& path) const {
        if (std::ranges::binary_search(otherPaths_, std::string_view(path)))
            return true;
        const auto below = path + "/";
        const auto next = std::ranges::lower_bound(otherPaths_, std::string_view(below));
        return next != otherPaths_.end() && next->starts_with(below);
    }

    std::unordered_set<std::string_view> created_ = {};
    std::vector<std::string_view> otherPaths_ = {}; ///< sorted
};

FileSystem::Result<FileStatus> statusOf(const FileUrl& url) {
    return systemFileSystem().status(url.path(), FollowLinks::no);
}

bool isMissing(const FileSystem::Result<FileStatus>& status) {
    return !status && (status.error().code == ENOENT || status.error().code == ENOTDIR);
}

std::string placeOf(const FileUrl& item) {
    return quoted(item.parent().path());
}

Undone occupied(const FileUrl& original, const FileUrl& item) {
    return std::unexpected("Na původním místě už je " + quoted(original.lastComponent()) +
                           " – nepřepisuji. Vracená položka " + quoted(item.lastComponent()) +
                           " zůstává v " + placeOf(item) + ".");
}

/// Gives an item its old name where the new one is the same to the file system. None where the two
/// are different things.
bool renamedWithinCase(const FileUrl& from, const FileUrl& to) {
    if (from.parent() != to.parent())
        return false;
    const auto folder = OpenFolder::open(to.parent().path(), FollowLinks::yes);
    return folder && renameWithinCase(*folder, std::string(to.lastComponent()),
                                      std::string(from.lastComponent()));
}

/// Brings an item from where it lies now to where it was, which has to be free.
Undone bringBack(const FileUrl& item, const FileUrl& original, std::string_view missing) {
    const auto status = statusOf(item);
    if (isMissing(status))
        return std::unexpected(quoted(item.lastComponent()).append(missing));
    if (const auto other = statusOf(original)) {
        const bool isSame = status && status->identity() == other->identity();
        if (isSame && renamedWithinCase(original, item))
            return {};
        return occupied(original, item);
    }
    auto moved = Relocation::move(item, original);
    if (!moved)
        return std::unexpected(quoted(item.lastComponent()) + " zůstává v " + placeOf(item) + ": " +
                               moved.error());
    return {};
}

class Undoing {
public:
    Undoing(const CreatedTrees& trees, const TrashProvider& trash) : trees_(trees), trash_(trash) {}

    Undone operator()(const UndoSteps::Moved& moved) const {
        return bringBack(moved.to, moved.from, " už na místě není.");
    }
    Undone operator()(const UndoSteps::Created& created) const {
        const auto& url = created.url;
        if (trees_.goesWithFolder(url) || isMissing(statusOf(url)))
            return {};
        const auto trashed = trash_.trash(url);
        if (!trashed)
            return std::unexpected(quoted(url.lastComponent()) +
                                   " nejde přesunout do Koše, zůstává v " + placeOf(url) + ": " +
                                   trashed.error());
        return {};
    }
    Undone operator()(const UndoSteps::Trashed& trashed) const {
        auto back = bringBack(trashed.inTrash, trashed.original, " už v Koši není.");
        if (back)
            trash_.forget(trashed.inTrash);
        return back;
    }
    Undone operator()(const UndoSteps::RemovedEmptyDirectory& removed) const {
        const auto made = MadeFolders::make(removed.url);
        if (!made)
            return std::unexpected("Složku " + quoted(removed.url.lastComponent()) +
                                   " nejde vytvořit: " + made.error().reason());
        return {};
    }

private:
    const CreatedTrees& trees_;
    const TrashProvider& trash_;
};

} // namespace

std::vector<std::string> takeBack(const std::vector<UndoStep>& steps, const TrashProvider& trash) {
    std::vector<std::string> messages;
    const CreatedTrees trees(steps);
    const Undoing undoing(trees, trash);
    for (const auto& step : std::views::reverse(steps))
        if (auto undone = std::visit(undoing, step); !undone)
            messages.push_back(std::move(undone.error()));
    return messages;
}

} // namespace fennik
