#pragma once

#include "app/model/LinkTargets.h"
#include "app/model/PanelHistory.h"
#include "app/model/PanelServices.h"
#include "app/model/PanelTab.h"
#include "core/listing/FileItems.h"
#include "core/listing/FolderOpener.h"

#include <QFlags>
#include <QObject>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

/// What an operation on a panel touched.
enum class PanelChange {
    items = 1,  ///< the rows; `generation` has grown
    cursor = 2, ///< the cursor is on another row
    tabs = 4,   ///< the path, order or history of a tab
    state = 8,  ///< loading, error, free space
    linkTargets = 16,
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

/// One of the two panels: its tabs, the listing of the active tab's folder, the cursor and the
/// state of loading. Folders are read on workers, and a late result never replaces a newer one.
/// Lives on the main thread.
class PanelModel final : public QObject {
    Q_OBJECT

public:
    PanelModel(PanelSide side, PanelServices services, std::string path);
    ~PanelModel() override;

    PanelSide side() const { return side_; }
    const std::vector<PanelTab>& tabs() const { return tabs_; }
    std::size_t activeTab() const { return activeTab_; }
    const PanelTab& tab() const { return tabs_[activeTab_]; }
    /// The folder of the active tab.
    FileUrl folder() const { return FileUrl(tab().path, FileUrl::Form::directory); }

    /// The parent entry, where there is one, and the sorted listing without what is hidden.
    const FileItems& items() const { return items_; }
    /// The last listing as it was read, hidden entries included.
    const FileItems& rawItems() const { return rawItems_; }
    std::size_t cursor() const { return cursor_; }
    /// Grows each time `items` is built anew.
    std::int64_t generation() const { return generation_; }
    bool loading() const { return loading_; }
    /// The identity of the newest load.
    int loadToken() const { return loadToken_; }
    const std::optional<FolderOpener::Failure>& error() const { return error_; }
    /// Whether the error is about the tab's own folder, not about one that was to be entered.
    bool ownFolderFailed() const {
        return error_ && failedRequest_.step == PanelHistory::Step::stay;
    }
    /// Free bytes on the volume of the shown folder.
    std::optional<std::int64_t> freeSpace() const { return freeSpace_; }
    /// Where the volume of the shown folder is mounted.
    const FileUrl& volumeRoot() const { return volumeRoot_; }
    bool canGo(PanelHistory::Step step) const;

    /// Reads the folder of the active tab again, or the one that failed.
    void refresh();
    /// Goes to `target`: a folder, or a file whose folder then has the cursor on it.
    void navigate(const FileUrl& target);
    /// Goes one folder up, with the cursor on the folder just left; where nothing of
    /// the tab's own folder can be shown, to the nearest one that can be.
    void goToParent();
    void goBack() { go(PanelHistory::Step::back); }
    void goForward() { go(PanelHistory::Step::forward); }
    /// Enters the folder under the cursor. Repeats what failed while an error is shown.
    void openItem();
    /// Ends a load, or leaves an error for the tab's folder. False when there was nothing to leave.
    bool escape();

    /// Rows outside the list are taken to its nearest end.
    void setCursor(std::ptrdiff_t row);
    void chooseSort(SortKey key);
    void setShowHidden(FolderOpener::ShowHidden showHidden);

    /// Whether the first listing has come, and nothing more is going to change on its own.
    bool settled() const { return generation_ > 0 && !loading_ && links_.settled(); }

    /// The target of the link called `name`, once it is known.
    const LinkTarget* linkTarget(const std::string& name) const { return links_.find(name); }
    /// Asks for the targets of the links in these rows, the last excluded, on a worker.
    void wantLinkTargets(std::size_t firstRow, std::size_t lastRow) {
        links_.want(items_, firstRow, lastRow);
    }

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::PanelChanges changes);

private:
    struct Request {
        FileUrl url;
        PanelHistory::Step step = PanelHistory::Step::stay;
        std::optional<std::string> selectName = {}; ///< where the cursor goes, if it is there
        bool isUpwards = false;
        bool nearestUsable = false; ///< a folder above will do as well
    };
    struct Loaded;

    PanelTab& activeTabState() { return tabs_[activeTab_]; }
    void go(PanelHistory::Step step);
    void load(Request request);
    PanelChanges finish(const Request& request, Loaded loaded);
    PanelChanges showFailure(const Request& request, FolderOpener::Failure failure);
    PanelChanges showListing(const Request& request, Loaded loaded);
    ListingView listingView() const { return {tab().sort, showHidden_, revealed_}; }
    void rebuildItems(FileItems items);
    PanelChanges placeCursor(std::size_t row);
    void rebuildFromRaw();

    PanelSide side_;
    PanelServices services_;
    std::vector<PanelTab> tabs_;
    std::size_t activeTab_ = 0;
    FileItems items_;
    FileItems rawItems_;
    std::size_t cursor_ = 0;
    std::int64_t generation_ = 0;
    bool loading_ = false;
    std::optional<FolderOpener::Failure> error_;
    std::optional<std::int64_t> freeSpace_;
    FileUrl volumeRoot_;
    FolderOpener::ShowHidden showHidden_ = FolderOpener::ShowHidden::no;
    std::optional<std::string> revealed_; ///< see `ListingView`
    PanelHistory history_;
    int loadToken_ = 0;
    Request pendingRequest_; ///< the newest load, while `loading_`
    Request failedRequest_;  ///< what `error_` is about
    LinkTargets links_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< gone with this panel
};

} // namespace fennik::app
