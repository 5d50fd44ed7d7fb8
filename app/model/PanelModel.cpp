#include "app/model/PanelModel.h"

#include "app/model/CursorPlacement.h"
#include "core/listing/FileSorter.h"
#include "core/platform/Volumes.h"

#include <algorithm>
#include <cmath>
#include <expected>
#include <utility>

namespace fennik::app {

namespace {

using FolderOpener::Failure;
using FolderOpener::Listing;
using FolderOpener::ShowHidden;
using Step = PanelHistory::Step;

constexpr const char* stopped = "načítání bylo zastaveno.";

/// The rows that a panel shows of a listing.
FileItems shownItems(const FileItems& raw, const ListingView& view) {
    std::vector<std::uint32_t> rows;
    rows.reserve(raw.size() + 1);
    if (!raw.folder().isRoot())
        rows.push_back(FileItems::parentRow);
    for (std::uint32_t row = 0; row < raw.size(); ++row) {
        const auto item = raw.view(row);
        const bool isShown = view.showHidden == ShowHidden::yes || !item.isHidden;
        if (isShown || item.name == view.revealed)
            rows.push_back(row);
    }
    return FileSorter::sort(raw.reordered(std::move(rows)), view.sort, {});
}

std::expected<Listing, Failure> openNearestUsable(const FileSystem& files, FileUrl url) {
    for (;; url = url.parent()) {
        auto listing = FolderOpener::open(files, url, ShowHidden::yes);
        if (listing || url.isRoot())
            return listing;
    }
}

} // namespace

/// What a worker brings back of a folder.
struct PanelModel::Loaded {
    std::expected<Listing, Failure> listing = std::unexpected(Failure{});
    ListingView view = {};
    FileItems items = {}; ///< shown that way
    std::optional<std::int64_t> freeSpace = {};
    FileUrl volumeRoot = {};
    double milliseconds = 0;
};

PanelModel::PanelModel(PanelSide side, PanelServices services, std::string path)
    : side_(side),
      services_(std::move(services)),
      tabs_(1),
      links_(services_, [this] { emit changed(PanelChange::linkTargets); }) {
    activeTabState().path = std::move(path);
}

PanelModel::~PanelModel() = default;

bool PanelModel::canGo(Step step) const {
    return history_.target(tab().id, step).has_value();
}

void PanelModel::refresh() {
    if (error_)
        load(failedRequest_);
    else
        load({.url = folder()});
}

void PanelModel::navigate(const FileUrl& target) {
    const bool stays = target.path() == tab().path;
    load({.url = target, .step = stays ? Step::stay : Step::navigate});
}

void PanelModel::goToParent() {
    // A second press counts from where the first one is still going.
    const bool isGoingUp = loading_ && pendingRequest_.isUpwards;
    const auto here = isGoingUp ? pendingRequest_.url : folder();
    if (here.isRoot())
        return;
    load({.url = here.parent(),
          .step = Step::navigate,
          .selectName = std::string(here.lastComponent()),
          .isUpwards = true,
          .nearestUsable = error_ && items_.empty()});
}

void PanelModel::go(Step step) {
    const auto target = history_.target(tab().id, step);
    if (!target)
        return;
    const FileUrl url(*target, FileUrl::Form::directory);
    const auto here = folder();
    Request request{.url = url, .step = step};
    if (here.parent() == url)
        request.selectName = std::string(here.lastComponent());
    load(std::move(request));
}

void PanelModel::openItem() {
    if (error_) {
        refresh();
        return;
    }
    if (cursor_ >= items_.size())
        return;
    const auto item = items_[cursor_];
    if (item.isParentLink)
        goToParent();
    // Nothing here can open a package but going into it.
    else if (item.opensAsFolder() || item.kind == FileKind::package)
        navigate(item.resolvedURL());
}

bool PanelModel::escape() {
    if (loading_) {
        ++loadToken_;
        loading_ = false;
        const bool nothingToShow = !error_ && items_.empty();
        emit changed(nothingToShow
                         ? showFailure({.url = folder()}, Failure::unreadable(folder(), stopped))
                         : PanelChanges(PanelChange::state));
        return true;
    }
    if (!error_ || ownFolderFailed())
        return false;
    error_.reset();
    load({.url = folder()});
    return true;
}

void PanelModel::load(Request request) {
    const auto token = ++loadToken_;
    loading_ = true;
    const auto started = services_.now();
    auto path = request.url.path();

    pendingRequest_ = request;
    auto work = [&files = services_.files, request, view = listingView(), folder = tab().path] {
        Loaded loaded;
        loaded.listing = request.nearestUsable
                             ? openNearestUsable(files, request.url)
                             : FolderOpener::open(files, request.url, ShowHidden::yes);
        if (!loaded.listing)
            return loaded;
        const auto& [directory, items, selectName] = *loaded.listing;
        loaded.view = view;
        if (directory.path() != folder)
            loaded.view.revealed.reset();
        if (const auto& wanted = selectName ? selectName : request.selectName)
            loaded.view.revealed = wanted;
        loaded.items = shownItems(items, loaded.view);
        if (const auto space = files.freeSpace(directory.path()))
            loaded.freeSpace = *space;
        loaded.volumeRoot =
            FileUrl(Volumes::containing(directory.path(), Volumes::mounted()).mountPoint);
        return loaded;
    };
    auto done = [this, token, started, request = std::move(request)](Loaded loaded) {
        if (token != loadToken_)
            return;
        loaded.milliseconds =
            std::chrono::duration<double, std::milli>(services_.now() - started).count();
        emit changed(finish(request, std::move(loaded)));
    };
    runThen(services_.disk, services_.main, std::move(path), life_, std::move(work),
            std::move(done));
    emit changed(PanelChange::state);
}

PanelChanges PanelModel::finish(const Request& request, Loaded loaded) {
    loading_ = false;
    if (loaded.listing)
        return showListing(request, std::move(loaded));
    services_.log("Složku nejde otevřít: " + loaded.listing.error().message());
    return showFailure(request, std::move(loaded.listing.error()));
}

PanelChanges PanelModel::showFailure(const Request& request, Failure failure) {
    error_ = std::move(failure);
    failedRequest_ = request;
    if (request.step != Step::stay)
        return PanelChange::state;
    // What the panel showed of its folder is no longer true.
    if (cursor_ < items_.size())
        activeTabState().cursorName = std::string(items_.view(cursor_).name);
    rawItems_ = {};
    freeSpace_.reset();
    rebuildItems({});
    return PanelChange::state | PanelChange::items | placeCursor(0);
}

PanelChanges PanelModel::showListing(const Request& request, Loaded loaded) {
    auto& listing = *loaded.listing;
    auto& current = activeTabState();
    const auto& path = listing.directory.path();
    const bool sameFolder = path == current.path;
    history_.record(current.id, request.step, current.path, path);
    if (!sameFolder) {
        current.path = path;
        current.cursorName.reset();
        links_.forget();
    } else {
        links_.askAgain();
    }
    error_.reset();
    freeSpace_ = loaded.freeSpace;
    volumeRoot_ = std::move(loaded.volumeRoot);
    rawItems_ = std::move(listing.items);
    revealed_ = loaded.view.revealed;
    const auto view = listingView();
    auto items = view == loaded.view ? std::move(loaded.items) : shownItems(rawItems_, view);

    auto wanted = listing.selectName ? listing.selectName : request.selectName;
    const bool isReload = sameFolder && !wanted && !items_.empty();
    const auto row = isReload
                         ? CursorPlacement::afterReload(items_, cursor_, items)
                         : CursorPlacement::byName(items, wanted ? wanted : current.cursorName);
    rebuildItems(std::move(items));
    const auto count = std::to_string(rawItems_.size());
    if (std::isfinite(loaded.milliseconds))
        services_.log("Načteno " + count + " položek za " +
                      std::to_string(std::llround(loaded.milliseconds)) + " ms");
    return PanelChange::items | PanelChange::state | PanelChange::tabs | placeCursor(row);
}

void PanelModel::rebuildItems(FileItems items) {
    items_ = std::move(items);
    ++generation_;
}

PanelChanges PanelModel::placeCursor(std::size_t row) {
    cursor_ = row;
    return PanelChange::cursor;
}

void PanelModel::setCursor(std::ptrdiff_t row) {
    const auto last = static_cast<std::ptrdiff_t>(items_.size()) - 1;
    const auto target = static_cast<std::size_t>(std::max<std::ptrdiff_t>(std::min(row, last), 0));
    if (target != cursor_)
        emit changed(placeCursor(target));
}

void PanelModel::chooseSort(SortKey key) {
    activeTabState().sort = tab().sort.choosing(key);
    rebuildFromRaw();
}

void PanelModel::setShowHidden(ShowHidden showHidden) {
    if (showHidden == showHidden_)
        return;
    showHidden_ = showHidden;
    rebuildFromRaw();
}

void PanelModel::rebuildFromRaw() {
    if (items_.empty()) {
        emit changed(PanelChange::tabs);
        return;
    }
    auto items = shownItems(rawItems_, listingView());
    const auto row = CursorPlacement::afterReload(items_, cursor_, items);
    rebuildItems(std::move(items));
    emit changed(PanelChange::items | PanelChange::tabs | placeCursor(row));
}

} // namespace fennik::app
