#include "app/model/AppModel.h"

namespace fennik::app {

void AppModel::openPacking() {
    if (sources().empty())
        showToast("Není co zabalit.");
}

void AppModel::openExtraction() {
    showToast("Není co rozbalit.");
}

void AppModel::packAnswerChanged(const PackAnswer& answer) {
    if (auto* dialog = stage_.shownAs<PackDialog>())
        dialog->answer = answer;
    confirmation_.reset();
    previewOutcome(OutcomePreview::When::afterTyping);
}

void AppModel::confirmPack(const PackAnswer& answer) {
    packAnswerChanged(answer);
}

void AppModel::confirmExtract(const std::string& target, bool ownFolder) {
    settings_.set(SettingKeys::extractIntoOwnFolder, ownFolder);
    dialogTextChanged(target);
}

void AppModel::answerPassword(const std::string& password) {
    if (const auto* dialog = stage_.shownAs<PasswordDialog>())
        dialog->pending->answer(password);
}

} // namespace fennik::app
