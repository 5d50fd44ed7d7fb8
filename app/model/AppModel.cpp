#include "app/model/AppModel.h"

#include <utility>

namespace fennik::app {

using FolderOpener::ShowHidden;

AppModel::AppModel(const PanelServices& services, FileUrl home, std::string leftPath,
                   std::string rightPath)
    : home_(std::move(home)),
      left_(PanelSide::left, services, std::move(leftPath)),
      right_(PanelSide::right, services, std::move(rightPath)) {}

void AppModel::start() {
    left_.refresh();
    right_.refresh();
}

void AppModel::activate(PanelSide side) {
    if (side == activeSide_)
        return;
    activeSide_ = side;
    emit changed(AppChange::activeSide);
}

void AppModel::switchPanel() {
    activate(activeSide_ == PanelSide::left ? PanelSide::right : PanelSide::left);
}

void AppModel::toggleHidden() {
    showHidden_ = showHidden_ == ShowHidden::yes ? ShowHidden::no : ShowHidden::yes;
    left_.setShowHidden(showHidden_);
    right_.setShowHidden(showHidden_);
    emit changed(AppChange::settings);
}

} // namespace fennik::app
