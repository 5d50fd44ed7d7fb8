#pragma once

#include "app/commands/catalogue/KAction.h"
#include "app/model/DialogStage.h"
#include "app/model/DiskActions.h"
#include "app/model/EngineBridge.h"
#include "app/model/OutcomePreview.h"
#include "app/model/PanelModel.h"
#include "app/model/PasswordDesk.h"
#include "app/model/PathSuggestions.h"
#include "app/model/Places.h"
#include "app/model/Settings.h"
#include "app/model/TabRestoration.h"
#include "app/model/Toast.h"
#include "app/model/TransferTarget.h"
#include "app/model/ports/Clipboard.h"
#include "app/model/ports/SettingsStore.h"
#include "app/model/ports/Workspace.h"
#include "core/archives/ArchivePacker.h"
#include "core/base/DelayedWork.h"
#include "core/listing/FolderSizeCache.h"
#include "core/listing/MarkTotals.h"
#include "core/operations/JobSnapshot.h"
#include "core/operations/TransferEngine.h"
#include "core/operations/TransferRequest.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <QObject>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::app {

class DesktopActions;
class ItemInspection;
class PreviewDecoder;
class QuickPreview;
struct ItemDetails;

enum class AppChange {
    activeSide = 1,
    settings = 2,
    dialog = 4,
    toast = 8,
    places = 16,  ///< favourites, recent folders
    request = 32, ///< something is to take the keyboard
    suggestions = 64,
    jobs = 128,        ///< the jobs of the queue
    undo = 256,        ///< what undo would take back
    outcome = 512,     ///< what will come of the text in the dialog, and if it is being confirmed
    operations = 1024, ///< whether the card of the queue is shown
    busy = 2048,       ///< what takes its time
    preview = 4096,    ///< the quick preview
    details = 8192,    ///< what is known of the item that the dialog is about
};
Q_DECLARE_FLAGS(AppChanges, AppChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(AppChanges)

/// What the application needs of the world around it. All of it outlives the model.
struct AppServices {
    PanelServices panels;
    SettingsStore& settings;
    Clipboard& clipboard;
    Executor& transferWorker; ///< one thread, for the jobs of the queue
    Executor& actionsWorker;  ///< one thread, for small changes of the disk and undo
    const TrashProvider& trash;
    const ArchivePacker& packer;
    Workspace& workspace;
    const PreviewDecoder& previews;
};

/// A request to a view of one side to take the keyboard. The token of every request is another one.
struct FocusRequest {
    PanelSide side = PanelSide::left;
    int token = 0;
};

/// A name that is being edited in its row. The token of every request is another one.
struct RenameRequest {
    PanelSide side = PanelSide::left;
    int token = 0;
    std::string name = {};    ///< of the item
    std::string failure = {}; ///< why the new name will not do; empty at first
};

class CommandLine;

/// Whether a question is to be asked the next time too.
enum class AskNextTime { no, yes };

/// The state of the window: its two panels, which of them has the keyboard, the one dialog and the
/// one toast on show, favourite and recent folders; and what every action does. Lives on the main
/// thread.
class AppModel final : public QObject {
    Q_OBJECT

public:
    /// The panels have the tabs of the last run, and are listed by `start`.
    AppModel(AppServices services, FileUrl home);
    ~AppModel() override;

    /// Lists both panels, with the absolute paths given in tabs of their own.
    void start(const std::optional<std::string>& left, const std::optional<std::string>& right);
    /// Shows the absolute paths given in tabs of their own, once no dialog is open.
    void openPaths(std::optional<std::string> left, std::optional<std::string> right);

    PanelModel& panel(PanelSide side) { return side == PanelSide::left ? left_ : right_; }
    const PanelModel& panel(PanelSide side) const {
        return side == PanelSide::left ? left_ : right_;
    }
    PanelModel& activePanel() { return panel(activeSide_); }
    PanelModel& otherPanel() { return panel(otherSide()); }
    PanelSide activeSide() const { return activeSide_; }
    const FileUrl& home() const { return home_; }
    Settings& settings() { return settings_; }
    CommandLine& commandLine() { return *commandLine_; }
    const Places& places() const { return places_; }
    /// For the one path that is being typed.
    PathSuggestions& pathSuggestions() { return pathSuggestions_; }
    const std::optional<Dialog>& dialog() const { return stage_.shown(); }
    const std::optional<Toast>& toast() const { return toast_; }
    /// Off the Mac, access to the disk counts as given.
    bool hasFullDiskAccess() const { return hasFullDiskAccess_; }
    /// The path bar that is to take the keyboard.
    const std::optional<FocusRequest>& focusPathRequest() const { return focusPathRequest_; }
    /// The panel that is to show the menu of favourite and recent folders.
    const std::optional<FocusRequest>& placesRequest() const { return placesRequest_; }

    /// Where the keyboard edits a name in its row; none: nowhere.
    const std::optional<RenameRequest>& renameRequest() const { return renameRequest_; }
    /// What the queue of jobs is at, in its order.
    const std::vector<JobSnapshot>& jobs() const { return jobs_; }
    bool hasUnfinishedJobs() const;
    /// To pause, resume and remove jobs.
    TransferEngine& engine() { return engine_; }
    /// Cancels a job, even while it asks.
    void cancelJob(const Uuid& id);
    /// Cancels all jobs, the reading of archives and whatever they ask, for good: the window
    /// closes.
    void stopJobs();
    /// Whether the card of the queue is shown.
    bool showsOperations() const { return showsOperations_; }
    void setShowsOperations(bool shows);
    /// The title of what undo would take back; none when there is nothing.
    const std::optional<std::string>& undoTitle() const { return undoTitle_; }
    /// What will come of the text in the dialog that is open.
    const Outcome& outcome() const { return preview_.outcome(); }
    /// Whether a worker examines or carries out what the dialog was confirmed with. What is entered
    /// meanwhile was meant for something else; the dialog can still be closed.
    bool isConfirming() const { return confirmation_ != nullptr; }
    /// What has been done for a while and is not done yet, for the status line; else empty.
    const std::string& busyText() const { return actions_.busyText(); }

    QuickPreview& quickPreview() { return *quickPreview_; }
    void closePreview();
    /// What has become known of the item that an `InfoDialog` is about.
    const ItemDetails& itemDetails() const;
    /// Puts the path of that item into the clipboard.
    void copyInfoPath();

    /// Does what the action stands for.
    void perform(KAction action);
    /// Why the action cannot do anything now, as a sentence; none where it can.
    std::optional<std::string> obstacle(KAction action) const;

    void activate(PanelSide side);
    void addFavorite();
    void removeFavorite(const std::string& path);
    /// Adds or removes the folder of the active panel.
    void toggleFavorite();
    /// Asks the path bar of `side` to take the keyboard.
    void requestPathField(PanelSide side);
    /// Closes the dialog without doing anything. That of a clash cancels the operation that asks.
    void closeDialog();
    /// The text in the dialog is another one now: bytes of a path, a name or a mask. For the first
    /// two `outcome` follows.
    void dialogTextChanged(const std::string& text);
    /// Copies or moves to the path `target`, in bytes. The dialog closes once that is under way; it
    /// stays where the outcome is a refusal.
    void confirmTransfer(const std::string& target);
    /// As `confirmTransfer`.
    void confirmNewFolder(const std::string& name);
    void confirmTrash(AskNextTime askNextTime);
    void confirmPaste();
    /// The answer in the dialog is another one now: `outcome` follows.
    void packAnswerChanged(const PackAnswer& answer);
    /// As `confirmTransfer`.
    void confirmPack(const PackAnswer& answer);
    /// As `confirmTransfer`.
    void confirmExtract(const std::string& target, bool ownFolder);
    /// Closing the dialog instead gives up.
    void answerPassword(const std::string& password);
    /// The next clash takes the place of this one, without the dialog closing in between.
    void answerConflict(ConflictDecision decision);

    /// Gives the item of the rename request its new name. The request ends once that is done; a
    /// failure stands in it.
    void commitRename(const std::string& newName);
    void cancelRename();
    /// As `commitRename`, and then asks for the name of the item in the next row.
    void renameNext(const std::string& newName);

    /// Items were dropped into a folder.
    void receiveDrop(TransferKind kind, std::vector<FileUrl> sources, const FileUrl& folder);
    /// Why these items cannot be dropped there, as a sentence; none where they may. Compares paths
    /// only and asks no disk.
    std::optional<std::string> dropObstacle(const std::vector<FileUrl>& sources,
                                            const FileUrl& folder) const;
    /// Marks or unmarks what matches `text` in the active panel, and closes the dialog.
    void applyMask(Marking marking, const std::string& text);
    /// The last masks that were applied, newest first, at most five.
    std::vector<std::string> maskHistory() const;

    void showToast(std::string text, Toast::Kind kind = Toast::Kind::info);
    void showToast(Toast toast);
    /// Writes the tabs of both panels and the active side, if they are not what was written last.
    void saveNow();

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::AppChanges changes);

private:
    PanelSide otherSide() const {
        return activeSide_ == PanelSide::left ? PanelSide::right : PanelSide::left;
    }
    using Handler = void (*)(AppModel&);
    static Handler handlerOf(KAction action);

    /// Puts into force what is not read whenever it is needed.
    void takeSetting(std::string_view name);
    void takeThrottle();
    void followPanel(PanelSide side);
    void restore();
    void scheduleSave();
    void open();
    void pathFromClipboard();
    void toggleHidden();
    void escape();
    void sizeAllFolders();
    void requestPlaces();

    void setDialog(Dialog dialog);
    void close(DialogStage::Id dialog);
    void takeClash(std::shared_ptr<PendingConflict> pending);
    void takeStage(DialogStage::Id shownBefore);
    void previewOutcome(OutcomePreview::When when);

    std::vector<FileUrl> sources();
    MarkTotals sourceTotals();
    void openTransfer(TransferKind kind);
    void enqueue(TransferKind kind, std::vector<TransferPair> pairs);
    /// Asks first when they are many.
    void transferInto(PasteDialog items);
    void copyToClipboard();
    void copyPath();
    void paste(TransferKind kind);

    using Confirmed = std::function<void(std::vector<TransferPair>)>;
    /// Calls `confirmed` once the target has been found and is none that is refused.
    void confirmTarget(TransferTarget::Question question, Confirmed confirmed);
    /// The same for what `examine` finds on a worker, at `path`.
    void confirm(std::string path, std::function<TransferTarget::Answer()> examine,
                 Confirmed confirmed);
    /// None when nothing is being confirmed any more.
    void setConfirmation(std::shared_ptr<int> confirmation);

    // Archives.
    void openPacking();
    /// Of the archives among the sources, or of what is marked in an open one.
    void openExtraction();
    bool refusesArchiveAsTarget();
    void pack(const std::vector<FileUrl>& sources, const FileUrl& archive, PackOptions options);
    void extract(const ExtractDialog& dialog, std::vector<TransferPair> pairs);
    void takeOpening(const PanelModel& panel);
    void takePassword(std::shared_ptr<PendingPassword> pending);
    void rememberPassword(const FileUrl& archive, const std::optional<std::string>& password);

    void quickLook();
    void stopLooking();
    void openInfo();
    void inspectItem();

    void startRename();
    void requestRename(PanelSide side, std::string name);
    void rename(const std::string& newName, std::optional<std::string> nextName);
    void newFolder();
    void trash();
    void moveToTrash(std::vector<FileUrl> items);
    void undo();
    AppChanges takeUndoTitle();
    void tellUndoTitle();
    void takeChanges();
    void showItem(PanelSide side, const FileUrl& folder, const std::string& name);

    void takeJobs(std::vector<JobSnapshot> jobs);
    void takeEnd(const JobSnapshot& job, const TransferRequest& request);
    void takeMarksOf(const JobSnapshot& job, const TransferRequest& request);
    void tellEnd(const JobSnapshot& job, const TransferRequest& request);
    void hideQueueLater();
    void giveUpPassword(const Uuid& job);

    AppServices services_;
    FileUrl home_;
    Settings settings_;
    Places places_;
    PathSuggestions pathSuggestions_;
    FolderSizeCache sizeCache_;
    PasswordDesk passwords_;
    PanelModel left_;
    PanelModel right_;
    TabRestoration leftRestoration_;
    TabRestoration rightRestoration_;
    PanelSide activeSide_ = PanelSide::left;
    DialogStage stage_;
    OutcomePreview preview_;
    std::shared_ptr<int> confirmation_; ///< of the dialog that is being confirmed on a worker
    DelayedWork nextClash_;             ///< closes the card of a clash unless there is another one
    std::optional<Toast> toast_;
    bool hasFullDiskAccess_ = true;
    std::optional<FocusRequest> focusPathRequest_;
    std::optional<FocusRequest> placesRequest_;
    std::optional<RenameRequest> renameRequest_;
    FileUrl renameFolder_;    ///< of the item
    bool isRenaming_ = false; ///< on the worker
    int lastToken_ = 0;
    std::string savedState_; ///< as it was written last
    DelayedWork saveWork_;
    DelayedWork toastWork_;

    /// Opened out of archives: other programs may have them open as long as this one runs.
    std::vector<TakenFile> takenFiles_;
    std::optional<std::string> undoTitle_;
    std::vector<JobSnapshot> jobs_;
    std::size_t batchErrors_ = 0; ///< of the jobs that have ended since the queue was empty
    bool showsOperations_ = false;
    DelayedWork hideWork_; ///< of the card of the queue
    UndoJournal journal_;
    DiskActions actions_;
    TransferEngine engine_;
    EngineBridge bridge_;
    std::unique_ptr<CommandLine> commandLine_;
    std::unique_ptr<DesktopActions> desktop_;
    std::unique_ptr<QuickPreview> quickPreview_;
    std::unique_ptr<ItemInspection> inspection_;
};

} // namespace fennik::app
