#pragma once

#include "app/model/PanelModel.h"

#include <QObject>

#include <string>

namespace fennik::app {

enum class AppChange {
    activeSide = 1,
    settings = 2,
};
Q_DECLARE_FLAGS(AppChanges, AppChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(AppChanges)

/// The state of the window: its two panels and which of them has the keyboard. Lives on the main
/// thread.
class AppModel final : public QObject {
    Q_OBJECT

public:
    /// The panels begin at these absolute paths, and are listed by `start`.
    AppModel(const PanelServices& services, FileUrl home, std::string leftPath,
             std::string rightPath);

    /// Lists both panels.
    void start();

    PanelModel& panel(PanelSide side) { return side == PanelSide::left ? left_ : right_; }
    PanelModel& activePanel() { return panel(activeSide_); }
    PanelSide activeSide() const { return activeSide_; }
    const FileUrl& home() const { return home_; }
    FolderOpener::ShowHidden showHidden() const { return showHidden_; }

    void activate(PanelSide side);
    void switchPanel();
    void toggleHidden();

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::AppChanges changes);

private:
    FileUrl home_;
    PanelModel left_;
    PanelModel right_;
    PanelSide activeSide_ = PanelSide::left;
    FolderOpener::ShowHidden showHidden_ = FolderOpener::ShowHidden::no;
};

} // namespace fennik::app
