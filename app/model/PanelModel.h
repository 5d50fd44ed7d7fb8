#pragma once

#include "app/model/ArchiveAccess.h"
#include "app/model/ArchiveBrowse.h"
#include "app/model/CancelFlag.h"
#include "app/model/DirectoryWatcher.h"
#include "app/model/FolderSizing.h"
#include "app/model/LinkTargets.h"
#include "app/model/PanelHistory.h"
#include "app/model/PanelServices.h"
#include "app/model/PanelTabs.h"
#include "app/model/Settings.h"
#include "core/base/DelayedWork.h"
#include "core/listing/FileItems.h"
#include "core/listing/FolderOpener.h"
#include "core/listing/MarkTotals.h"

#include <QFlags>
#include <QObject>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::app {

/// What an operation on a panel touched.
enum class PanelChange {
    items = 1,  ///< the rows; `generation` has grown
    cursor = 2, ///< the cursor is on another row
    tabs = 4,   ///< the tabs, or the path, order or history of one
    state = 8,  ///< loading, error, free space
    marks = 16, ///< the marks, or what the marked items come to
    sizes = 32, ///< sizes of folders, or which of them are being computed
    visit = 64, ///< the active tab has come to a folder
    linkTargets = 128,
    opening = 256, ///< an archive was read, a file taken out of one, or neither could be done
};
Q_DECLARE_FLAGS(PanelChanges, PanelChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(PanelChanges)

/// How a listing becomes the rows of a panel.
struct ListingView {
    PanelSort sort;
    FolderOpener::ShowHidden showHidden = FolderOpener::ShowHidden::no;
    /// A hidden item that was asked for by its name, and so is shown all the same.
    std::optional<std::string> revealed;

    friend bool operator==(const ListingView&, const ListingView&) = default;
};

/// One of the two panels: its tabs, the listing of the active tab's folder, the cursor, the marks,
/// the sizes of folders and the state of loading. Folders are read on workers, and a late result
/// never replaces a newer one. Lives on the main thread.
class PanelModel final : public QObject {
    Q_OBJECT

public:
    /// Begins with one tab at `path`; nothing is read before `refresh` or a navigation. `settings`
    /// and `sizeCache` outlive the panel. `askPassword` is called on workers.
    PanelModel(PanelSide side, PanelServices services, const Settings& settings,
               FolderSizeCache& sizeCache, AskPassword askPassword, std::string path);
    ~PanelModel() override;

    PanelSide side() const { return side_; }
    const std::vector<PanelTab>& tabs() const { return shown_.tabs.all(); }
    std::size_t activeTab() const { return shown_.tabs.activeIndex(); }
    const PanelTab& tab() const { return shown_.tabs.active(); }
    /// The archive that is shown in place of the folder; none: a folder is shown.
    const std::optional<ArchiveBrowse>& archive() const { return shown_.archive; }
    /// Whether what is being loaded is an archive that has to be read first.
    bool isOpeningArchive() const { return loading_ && pendingRequest_.readsArchive(); }
    /// The archive that a tab shows; null where it shows a folder.
    const ArchiveBrowse* archiveOfTab(std::size_t index) const;
    /// The folder of the active tab; in an archive, the one that holds the archive.
    FileUrl folder() const { return FileUrl(tab().path, FileUrl::Form::directory); }
    /// Where the rows lie: the folder, or a path that leads through the archive.
    FileUrl location() const {
        const auto& browse = archive();
        return browse ? browse->location() : folder();
    }
    /// The tabs as they are to be found again: the active one with the name under its cursor.
    std::vector<PanelTab> tabsToSave() const;

    /// The parent entry, where there is one, and the sorted listing without what is hidden.
    const FileItems& items() const { return shown_.items; }
    /// The last listing as it was read, hidden entries included.
    const FileItems& rawItems() const { return shown_.rawItems; }
    std::size_t cursor() const { return shown_.cursor; }
    /// The item under the cursor; none where there is no row.
    std::optional<FileItemView> cursorItem() const;
    /// Grows each time `items` is built anew.
    std::int64_t generation() const { return generation_; }
    bool loading() const { return loading_; }
    /// The identity of the newest load.
    int loadToken() const { return loadToken_; }
    const std::optional<FolderOpener::Failure>& error() const { return shown_.error; }
    /// Whether the error is about the tab's own folder, not about one that was to be entered.
    bool ownFolderFailed() const {
        return error() && shown_.failedRequest.step == PanelHistory::Step::stay;
    }
    /// Free bytes on the volume of the shown folder.
    std::optional<std::int64_t> freeSpace() const { return shown_.freeSpace; }
    /// Where the volume of the shown folder is mounted.
    const FileUrl& volumeRoot() const { return shown_.volumeRoot; }
    /// Back out of an archive leads to the folder that holds it.
    bool canGo(PanelHistory::Step step) const;

    const MarkState& marks() const { return shown_.marks; }
    const MarkTotals& markTotals() const { return shown_.markTotals; }
    /// The rows that an action works on: the marked ones, else the one under the cursor. None while
    /// an error hides them.
    std::vector<std::size_t> targets() const {
        return error() ? std::vector<std::size_t>() : marks().targets(items(), cursor());
    }
    const FolderSizes& folderSizes() const { return sizing_.sizes(); }
    /// The names of the folders whose size is being computed.
    const NameSet& sizing() const { return sizing_.sizing(); }

    /// Reads the folder of the active tab again, or the one that failed.
    void refresh();
    /// Reads the folder again, with the cursor then on the item called `name`. Somewhere else the
    /// panel is on its way to, it goes on to.
    void reloadOn(std::string name);
    /// The folder may be another one than it was read as: it is read again, soon.
    void takeChange();
    /// Goes to `target`: a folder, or a file whose folder then has the cursor on it.
    void navigate(const FileUrl& target);
    /// Goes to `target`, which the user is typing: a failure is told by `typedFailure`, and the
    /// panel goes on showing what it shows.
    void tryNavigate(const FileUrl& target);
    /// Why the path typed last could not be opened; none while it may still be.
    const std::optional<FolderOpener::Failure>& typedFailure() const { return typedFailure_; }
    /// Why the archive, or the file in one, that was to be opened last could not be, as a sentence;
    /// else empty. The panel goes on showing what it shows.
    const std::string& openingFailure() const { return openingFailure_; }
    /// The file in an archive that was opened last; without a place when there is none.
    const TakenFile& takenFile() const { return takenFile_; }
    /// Goes one folder up, also out of an archive, with the cursor on what was just left; where
    /// nothing of the tab's own folder can be shown, to the nearest one that can be.
    void goToParent();
    void goBack() { go(PanelHistory::Step::back); }
    void goForward() { go(PanelHistory::Step::forward); }
    /// Enters the folder or archive under the cursor; out of an archive, any other file is taken.
    /// Repeats what failed while an error is shown. False for an item that is none of these.
    bool openItem();
    /// Shows another folder of the shown archive, or of one that it lies in, as many archives
    /// further out as `outwards` says; "" is its root.
    void goToInner(std::string inner, int outwards = 0);
    /// Shows the folder that holds the archive, with the cursor on the archive.
    void leaveArchive();
    /// The password of an archive that the panel shows: kept as long as it is open. None: it was
    /// wrong.
    void takePassword(const FileUrl& archiveFile, const std::optional<std::string>& password);
    /// Ends the reading of an archive, for good: the window closes.
    void stopReading() { loadFlag_->set(); }
    /// Ends a load, or leaves an error for the tab's folder. False when there was nothing to leave.
    bool escape();

    // The cursor and the marks stand still while an error hides the rows.

    /// Rows outside the list are taken to its nearest end.
    void setCursor(std::ptrdiff_t row);
    /// Puts the cursor on the first item whose name begins with `text`, whatever case and
    /// diacritics. False when there is none.
    bool jumpTo(std::string_view text);
    void chooseSort(SortKey key);
    /// The setting for hidden files is another one now.
    void takeShowHidden();

    /// Whether a folder was ever to be listed.
    bool hasBegun() const { return loadToken_ > 0; }
    /// Takes `tabs`, at least one, in place of all there were. Only before anything was listed.
    void replaceTabs(PanelTabs tabs);
    /// Takes out those tabs that `isGone`, but not an active one that was to be listed; when none
    /// is left, a tab at `fallback` stands in.
    void dropTabs(const std::function<bool(const PanelTab&)>& isGone, const std::string& fallback);
    /// A copy of the active tab beside it, which is then the active one.
    void newTab();
    /// A tab at `path` beside the active one, which is then the active one; the tab that stands at
    /// `path` where there is one.
    void openTab(const std::string& path);
    void selectTab(std::size_t index);
    void nextTab() { selectTab(shown_.tabs.neighbour(1)); }
    void previousTab() { selectTab(shown_.tabs.neighbour(-1)); }
    /// The last tab stays.
    void closeTab(std::size_t index);
    void moveTab(std::size_t from, std::size_t to);
    /// Exchanges all that the panels show. Loads that are under way begin anew on the other side.
    void swapWith(PanelModel& other);

    /// Marks or unmarks the item in `row`.
    void toggleMark(std::size_t row);
    /// Marks the rows between two, both included, and puts the cursor on the second one.
    void markRange(std::ptrdiff_t from, std::ptrdiff_t to);
    /// Marks the item under the cursor, then moves the cursor by `step`.
    void markAndMove(std::ptrdiff_t step);
    void toggleMarkAndMoveDown();
    void markAll();
    void invertMarks();
    /// False when nothing was marked.
    bool unmarkAll();
    void markByMask(const FileMask& mask, Marking marking);
    void unmark(const NameSet& names);
    /// What the items that match come to.
    MarkTotals totalsOf(const FileMask& mask) const;

    /// Marks the item under the cursor, and computes its size when it is a folder.
    void markAndSize();
    /// False when the panel shows no folder whose size could be computed.
    bool sizeAllFolders();
    /// Stops computing sizes of folders. False when none was being computed.
    bool stopSizing();

    /// Whether the first listing has come, and nothing more is going to change on its own.
    bool settled() const { return generation_ > 0 && !loading_ && links_.settled(); }

    /// The target of the link called `name`, once it is known.
    const LinkTarget* linkTarget(const std::string& name) const { return links_.find(name); }
    /// Asks for the targets of the links in these rows, the last excluded, on a worker.
    void wantLinkTargets(std::size_t firstRow, std::size_t lastRow) {
        if (!archive())
            links_.want(items(), firstRow, lastRow);
    }

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::PanelChanges changes);

private:
    struct Request {
        FileUrl url;
        PanelHistory::Step step = PanelHistory::Step::stay;
        bool isUpwards = false;
        bool nearestUsable = false; ///< a folder above will do as well
        bool isVisit = false;       ///< of a folder that the user has chosen, even in a new tab
        bool isTyped = false;       ///< the user waits for the answer where the path was typed
        bool wasFolder = false;     ///< when it was shown, so that a file in its place will not do
        std::optional<std::string> selectName = {}; ///< where the cursor goes, if it is there
        /// What of an archive is to be shown; none: the folder `url`. Otherwise that is where the
        /// archive lies, or the outermost of several.
        std::optional<ArchiveWish> archive = {};

        /// Where the rows will lie.
        FileUrl location() const { return archive ? archive->location() : url; }
        bool readsArchive() const { return archive && archive->what != ArchiveWish::What::show; }
    };
    /// All that goes to the other side when the panels change places, but for the sizes.
    struct Shown {
        PanelTabs tabs;
        std::optional<ArchiveBrowse> archive = {};
        PanelHistory history = {};
        std::map<Uuid, MarkState> tabMarks = {};        ///< of the tabs that are not active
        std::map<Uuid, ArchiveBrowse> tabArchives = {}; ///< likewise
        FileItems items = {};
        FileItems rawItems = {};
        std::size_t cursor = 0;
        MarkState marks = {};
        MarkTotals markTotals = {};
        std::optional<FolderOpener::Failure> error = {};
        Request failedRequest = {}; ///< what `error` is about
        std::optional<std::int64_t> freeSpace = {};
        FileUrl volumeRoot = {};
        std::optional<std::string> revealed = {}; ///< see `ListingView`
        bool sizesStopped = false; ///< by the user: none are computed unasked any more
    };
    struct Loaded;

    PanelTab& activeTabState() { return shown_.tabs.active(); }
    void go(PanelHistory::Step step);
    /// What the panel shows, once more.
    Request here() const;
    Request toArchive(ArchiveWish::What what, ArchiveBrowse browse) const;
    /// One folder up from there; none from the root of all.
    std::optional<Request> above(const std::optional<ArchiveBrowse>& browse,
                                 const FileUrl& folder) const;
    bool openItemOfArchive(const FileItem& item);
    void load(Request request);
    PanelChanges finish(const Request& request, Loaded loaded);
    static void findInArchive(const ArchiveAccess& access, const ArchiveWish& wish, Loaded& loaded);
    PanelChanges takeOpening(Loaded loaded);
    PanelChanges showFailure(const Request& request, FolderOpener::Failure failure);
    PanelChanges showListing(const Request& request, Loaded loaded);
    ListingView listingView() const;
    void rebuildItems(FileItems items);
    PanelChanges placeCursor(std::size_t row);
    PanelChanges rebuildFromRaw();
    PanelChanges takeMarks();
    void takeSizes();
    void computeAutomatically(const std::vector<std::string>& changedNames);
    void folderChanged(int watchedBy);
    void reloadWhenStale();
    void forgetTab(const Uuid& id);
    enum class Rows { keep, clear };
    void leaveTab(Rows rows);
    void showTab(std::size_t index, bool isVisit);
    void select(std::size_t index, bool isVisit);
    void clearRows();
    void stopLoading();
    void endLoading();

    PanelSide side_;
    PanelServices services_;
    const Settings& settings_;
    FolderSizeCache& sizeCache_;
    AskPassword askPassword_;
    Shown shown_;
    FolderSizing sizing_;
    LinkTargets links_;
    std::int64_t generation_ = 0;
    bool loading_ = false;
    int loadToken_ = 0;
    Request pendingRequest_; ///< the newest load, while `loading_`
    std::shared_ptr<CancelFlag> loadFlag_ = std::make_shared<CancelFlag>(); ///< of that load
    std::optional<FolderOpener::Failure> typedFailure_;
    std::string openingFailure_;
    TakenFile takenFile_;
    std::shared_ptr<DirectoryWatcher> watcher_;
    /// Where sizes may be computed unasked; none where they may not.
    std::optional<FolderSizing::Extent> automaticSizes_;
    int watcherToken_ = 0;             ///< of the load that brought `watcher_`
    DelayedWork reload_;               ///< after a change of the folder
    bool isStale_ = false;             ///< the folder has changed since it was read
    bool changedWhileLoading_ = false; ///< the folder that is being read, and maybe too late
    std::chrono::steady_clock::time_point loadEnded_;
    std::chrono::steady_clock::duration loadTook_{};
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< gone with this panel
};

} // namespace fennik::app
