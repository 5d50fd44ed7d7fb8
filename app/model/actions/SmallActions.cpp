#include "app/model/AppModel.h"
#include "app/model/ItemCount.h"
#include "core/base/CzechText.h"
#include "core/operations/FileActions.h"

#include <expected>
#include <optional>
#include <utility>

namespace fennik::app {

namespace {

/// The one item that an undo has put back to its place, if it was a single one.
std::optional<FileUrl> onlyItemBack(const std::optional<UndoEntry>& undone) {
    if (!undone || undone->steps.size() != 1)
        return {};
    const auto step = undone->steps.all().front();
    if (const auto* moved = std::get_if<UndoSteps::Moved>(&step))
        return moved->from;
    if (const auto* trashed = std::get_if<UndoSteps::Trashed>(&step))
        return trashed->original;
    return {};
}

} // namespace

// Renaming

void AppModel::startRename() {
    const auto item = activePanel().cursorItem();
    if (!item || item->isParentLink)
        return showToast("Není co přejmenovat.");
    requestRename(activeSide_, std::string(item->name));
}

void AppModel::requestRename(PanelSide side, std::string name) {
    renameRequest_ = RenameRequest{side, ++lastToken_, std::move(name), {}};
    renameFolder_ = panel(side).folder();
    isRenaming_ = false;
    emit changed(AppChange::request);
}

void AppModel::cancelRename() {
    if (!std::exchange(renameRequest_, {}))
        return;
    isRenaming_ = false;
    emit changed(AppChange::request);
}

void AppModel::commitRename(const std::string& newName) {
    rename(newName, std::nullopt);
}

void AppModel::renameNext(const std::string& newName) {
    if (!renameRequest_)
        return;
    const auto& items = panel(renameRequest_->side).items();
    const auto row = items.rowOf(renameRequest_->name);
    std::optional<std::string> next;
    if (row && *row + 1 < items.size())
        next = std::string(items.view(*row + 1).name);
    rename(newName, std::move(next));
}

void AppModel::rename(const std::string& newName, std::optional<std::string> nextName) {
    if (!renameRequest_ || isRenaming_)
        return;
    isRenaming_ = true;
    const auto request = *renameRequest_;
    auto done = [this, request, nextName = std::move(nextName),
                 folder = renameFolder_](std::expected<FileUrl, FileActions::Failure> renamed) {
        const bool isOpen = renameRequest_ && renameRequest_->token == request.token;
        if (isOpen)
            isRenaming_ = false;
        if (!renamed) {
            if (!isOpen)
                return showToast(renamed.error().message(), Toast::Kind::error);
            renameRequest_->failure = renamed.error().message();
            emit changed(AppChange::request);
            return;
        }
        const auto name = std::string(renamed->lastComponent());
        if (isOpen)
            renameRequest_.reset();
        const bool goesOn = isOpen && nextName && panel(request.side).folder() == folder;
        showItem(request.side, folder, goesOn ? *nextName : name);
        tellUndoTitle();
        if (goesOn)
            requestRename(request.side, *nextName);
        else
            emit changed(AppChange::request);
        if (name != request.name)
            showToast({.text = "Přejmenováno na " + quoted(name),
                       .kind = Toast::Kind::ok,
                       .undoable = true});
    };
    actions_.run(
        "Přejmenovávám " + quoted(request.name) + "…",
        [item = renameFolder_.appending(request.name), newName, &journal = journal_] {
            return FileActions::rename(item, newName, journal);
        },
        std::move(done));
}

// New folders, the trash and undo

void AppModel::newFolder() {
    setDialog(NewFolderDialog{.folder = activePanel().folder()});
}

void AppModel::trash() {
    auto items = sources();
    if (items.empty())
        return showToast("Není co přesunout do Koše.");
    if (!settings_.get(SettingKeys::confirmTrash))
        return moveToTrash(std::move(items));
    const auto totals = sourceTotals();
    setDialog(TrashDialog{.items = std::move(items),
                          .knownBytes = totals.bytes,
                          .hasUnsizedFolders = totals.hasUnsizedFolders()});
}

void AppModel::moveToTrash(std::vector<FileUrl> items) {
    auto what = "Přesouvám do Koše " + itemsInShort(items) + "…";
    actions_.run(
        std::move(what),
        [items = std::move(items), &trash = services_.trash, &journal = journal_] {
            return FileActions::trash(items, trash, journal);
        },
        [this](const FileActions::Trashing& result) {
            takeChanges();
            tellUndoTitle();
            const bool hasFailed = !result.failures.empty();
            std::string text;
            for (const auto& failure : result.failures)
                text += (text.empty() ? "" : "\n") + failure;
            if (!hasFailed)
                text = "V Koši: " + itemsInShort(result.trashed);
            showToast({.text = std::move(text),
                       .kind = hasFailed ? Toast::Kind::error : Toast::Kind::ok,
                       .undoable = !result.trashed.empty()});
        });
}

void AppModel::undo() {
    using Undone = std::expected<std::optional<UndoEntry>, UndoFailure>;
    const auto title = undoTitle_ ? "Vracím: " + *undoTitle_ + "…" : "Vracím…";
    actions_.run(
        title, [&trash = services_.trash, &journal = journal_] { return journal.undoLast(trash); },
        [this](const Undone& undone) {
            if (const auto back = undone ? onlyItemBack(*undone) : std::nullopt)
                showItem(activeSide_, back->parent(), std::string(back->lastComponent()));
            else
                takeChanges();
            tellUndoTitle();
            if (!undone)
                showToast("Vráceno jen částečně:\n" + undone.error().message(), Toast::Kind::error);
            else if (!*undone)
                showToast("Není co vrátit.");
            else
                showToast("Vráceno: " + (*undone)->title, Toast::Kind::ok);
        });
}

AppChanges AppModel::takeUndoTitle() {
    auto title = journal_.lastTitle();
    if (title == undoTitle_)
        return {};
    undoTitle_ = std::move(title);
    return AppChange::undo;
}

void AppModel::tellUndoTitle() {
    if (const auto changes = takeUndoTitle())
        emit changed(changes);
}

void AppModel::takeChanges() {
    left_.takeChange();
    right_.takeChange();
}

void AppModel::showItem(PanelSide side, const FileUrl& folder, const std::string& name) {
    for (auto* shown : {&left_, &right_}) {
        if (shown->side() == side && shown->location() == folder)
            shown->reloadOn(name);
        else
            shown->takeChange();
    }
}

} // namespace fennik::app
