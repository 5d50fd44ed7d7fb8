#include "app/model/AppModel.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

bool AppModel::hasUnfinishedJobs() const {
    return !std::ranges::all_of(jobs_, &JobSnapshot::hasEnded);
}

void AppModel::setShowsOperations(bool shows) {
    if (std::exchange(showsOperations_, shows) != shows)
        emit changed(AppChange::operations);
}

void AppModel::dialogTextChanged(const std::string& text) {
    if (auto* transfer = dialog_ ? std::get_if<TransferDialog>(&*dialog_) : nullptr)
        transfer->target = text;
}

void AppModel::confirmTransfer(const std::string& target) {
    dialogTextChanged(target);
    closeDialog();
}

void AppModel::confirmNewFolder(const std::string& name) {
    dialogTextChanged(name);
    closeDialog();
}

void AppModel::confirmTrash(AskNextTime askNextTime) {
    if (askNextTime == AskNextTime::no)
        settings_.set(SettingKeys::confirmTrash, false);
    closeDialog();
}

void AppModel::confirmPaste() {
    closeDialog();
}

void AppModel::answerConflict(ConflictDecision decision) {
    if (const auto* asked = dialog_ ? std::get_if<ConflictDialog>(&*dialog_) : nullptr)
        asked->pending->decide(decision);
    closeDialog();
}

void AppModel::commitRename(const std::string&) {
    cancelRename();
}

void AppModel::renameNext(const std::string& newName) {
    commitRename(newName);
}

void AppModel::cancelRename() {
    renameRequest_.reset();
    emit changed(AppChange::request);
}

void AppModel::receiveDrop(TransferKind kind, std::vector<FileUrl> sources, const FileUrl& folder) {
    setDialog(PasteDialog{kind, std::move(sources), folder});
}

std::optional<std::string> AppModel::dropObstacle(const std::vector<FileUrl>&,
                                                  const FileUrl&) const {
    return std::nullopt;
}

} // namespace fennik::app
