#pragma once

#include "app/commands/catalogue/KAction.h"
#include "app/model/Dialog.h"
#include "app/model/PanelModel.h"
#include "app/model/PathSuggestions.h"
#include "app/model/Places.h"
#include "app/model/Settings.h"
#include "app/model/TabRestoration.h"
#include "app/model/Toast.h"
#include "app/model/ports/Clipboard.h"
#include "app/model/ports/SettingsStore.h"
#include "core/base/DelayedWork.h"
#include "core/listing/FolderSizeCache.h"

#include <QObject>

#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

enum class AppChange {
    activeSide = 1,
    settings = 2,
    dialog = 4,
    toast = 8,
    places = 16,  ///< favourites, recent folders
    request = 32, ///< something is to take the keyboard
    suggestions = 64,
};
Q_DECLARE_FLAGS(AppChanges, AppChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(AppChanges)

/// What the application needs of the world around it. All of it outlives the model.
struct AppServices {
    PanelServices panels;
    SettingsStore& settings;
    const Clipboard& clipboard;
};

/// A request to a view of one side to take the keyboard. The token of every request is another one.
struct FocusRequest {
    PanelSide side = PanelSide::left;
    int token = 0;
};

/// The state of the window: its two panels, which of them has the keyboard, the one dialog and the
/// one toast on show, favourite and recent folders; and what every action does. Lives on the main
/// thread.
class AppModel final : public QObject {
    Q_OBJECT

public:
    /// The panels have the tabs of the last run, and are listed by `start`.
    AppModel(AppServices services, FileUrl home);

    /// Lists both panels, with the absolute paths given in tabs of their own.
    void start(const std::optional<std::string>& left, const std::optional<std::string>& right);

    PanelModel& panel(PanelSide side) { return side == PanelSide::left ? left_ : right_; }
    PanelModel& activePanel() { return panel(activeSide_); }
    PanelModel& otherPanel() { return panel(otherSide()); }
    PanelSide activeSide() const { return activeSide_; }
    const FileUrl& home() const { return home_; }
    Settings& settings() { return settings_; }
    const Places& places() const { return places_; }
    /// For the one path that is being typed.
    PathSuggestions& pathSuggestions() { return pathSuggestions_; }
    const std::optional<Dialog>& dialog() const { return dialog_; }
    const std::optional<Toast>& toast() const { return toast_; }
    /// Off the Mac, access to the disk counts as given.
    bool hasFullDiskAccess() const { return hasFullDiskAccess_; }
    /// The path bar that is to take the keyboard.
    const std::optional<FocusRequest>& focusPathRequest() const { return focusPathRequest_; }
    /// The panel that is to show the menu of favourite and recent folders.
    const std::optional<FocusRequest>& placesRequest() const { return placesRequest_; }

    /// Does what the action stands for.
    void perform(KAction action);
    /// Why the action cannot do anything now, as a sentence; none where it can.
    std::optional<std::string> obstacle(KAction action);

    void activate(PanelSide side);
    void addFavorite();
    void removeFavorite(const std::string& path);
    /// Adds or removes the folder of the active panel.
    void toggleFavorite();
    /// Asks the path bar of `side` to take the keyboard.
    void requestPathField(PanelSide side);
    void closeDialog();
    /// Marks or unmarks what matches `text` in the active panel, and closes the dialog.
    void applyMask(Marking marking, const std::string& text);
    /// The last masks that were applied, newest first, at most five.
    std::vector<std::string> maskHistory() const;

    void showToast(std::string text, Toast::Kind kind = Toast::Kind::info);
    /// Writes the tabs of both panels and the active side, if they are not what was written last.
    void saveNow();

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::AppChanges changes);

private:
    PanelSide otherSide() const {
        return activeSide_ == PanelSide::left ? PanelSide::right : PanelSide::left;
    }
    void followPanel(PanelSide side);
    void restore();
    void scheduleSave();
    void setDialog(Dialog dialog);
    void open();
    void pathFromClipboard();
    void toggleHidden();
    void escape();
    void sizeAllFolders();
    void requestPlaces();

    AppServices services_;
    FileUrl home_;
    Settings settings_;
    Places places_;
    PathSuggestions pathSuggestions_;
    FolderSizeCache sizeCache_;
    PanelModel left_;
    PanelModel right_;
    TabRestoration leftRestoration_;
    TabRestoration rightRestoration_;
    PanelSide activeSide_ = PanelSide::left;
    std::optional<Dialog> dialog_;
    std::optional<Toast> toast_;
    bool hasFullDiskAccess_ = true;
    std::optional<FocusRequest> focusPathRequest_;
    std::optional<FocusRequest> placesRequest_;
    int lastToken_ = 0;
    std::string savedState_; ///< as it was written last
    DelayedWork saveWork_;
    DelayedWork toastWork_;
};

} // namespace fennik::app
