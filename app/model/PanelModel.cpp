#include "app/model/PanelModel.h"

#include "app/model/ArchiveListing.h"
#include "app/model/ArchivePaths.h"
#include "app/model/CursorPlacement.h"
#include "core/base/FoldedText.h"
#include "core/listing/DirectorySnapshot.h"
#include "core/listing/FileMask.h"
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

/// A folder that goes on changing is read again after at least this, and after at least so many
/// times as long as the last reading took.
constexpr auto leastReloadPause = std::chrono::milliseconds(250);
constexpr int reloadPauseFactor = 3;

/// The rows that a panel shows of a listing.
FileItems shownItems(const FileItems& raw, const ListingView& view, const FolderSizes& sizes) {
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
    return FileSorter::sort(raw.reordered(std::move(rows)), view.sort, sizes);
}

std::expected<Listing, Failure> openNearestUsable(const FileSystem& files, FileUrl url,
                                                  const Volumes::Source& mounted,
                                                  const FolderOpener::KnownLinks& known) {
    for (;; url = url.parent()) {
        auto listing = FolderOpener::open(files, url, ShowHidden::yes, mounted, known);
        if (listing || url.isRoot())
            return listing;
    }
}

/// The entry of `folder` through which the way leads to `below`; none where it does not.
std::optional<std::string> childTowards(const FileUrl& folder, FileUrl below) {
    while (!below.isRoot()) {
        const auto above = below.parent();
        if (above.path() == folder.path())
            return std::string(below.lastComponent());
        below = above;
    }
    return std::nullopt;
}

/// Whether a size can be computed for the item: links lead elsewhere.
bool canBeSized(const FileItemView& item) {
    const bool isFolder = item.kind == FileKind::directory || item.kind == FileKind::package;
    return isFolder && !item.isParentLink;
}

FolderSizes knownSizes(FolderSizeCache& cache, const FileItems& items, const Date& today) {
    FolderSizes known;
    for (std::size_t row = 0; row < items.size(); ++row) {
        const auto item = items.view(row);
        if (!canBeSized(item))
            continue;
        if (const auto entry = cache.lookup(items.folder().appending(item.name).path(), today))
            known.emplace(item.name, entry->bytes);
    }
    return known;
}

} // namespace

/// What a worker brings back of a folder.
struct PanelModel::Loaded {
    std::expected<Listing, Failure> listing = std::unexpected(Failure{});
    ListingView view = {};
    std::optional<ArchiveBrowse> archive = {};  ///< that `listing` is of
    LinkTargets::NamedTargets linkTargets = {}; ///< in an archive
    TakenFile file = {};                        ///< in place of a listing
    std::string openingFailure = {};            ///< a sentence; empty where there is nothing to say
    FileItems items = {};                       ///< shown that way
    FolderSizes knownSizes = {};                ///< of its folders
    bool isUnchanged = false;                   ///< since the listing that the panel had
    std::vector<std::string> changedNames = {};
    std::vector<std::string> removedNames = {};
    std::optional<FolderSizing::Extent> automaticSizes =
        {}; ///< none where they may not be computed
    std::optional<std::int64_t> freeSpace = {};
    FileUrl volumeRoot = {};
    std::shared_ptr<DirectoryWatcher> watcher = {};
    std::chrono::steady_clock::duration took = {};
};

PanelModel::PanelModel(PanelSide side, PanelServices services, const Settings& settings,
                       FolderSizeCache& sizeCache, AskPassword askPassword, std::string path)
    : side_(side),
      services_(std::move(services)),
      settings_(settings),
      sizeCache_(sizeCache),
      askPassword_(std::move(askPassword)),
      shown_{.tabs = PanelTabs(std::move(path))},
      sizing_(services_, sizeCache, [this] { takeSizes(); }),
      links_(
          services_, [this] { emit changed(PanelChange::linkTargets); },
          [this] { folderChanged(loading_ ? loadToken_ : watcherToken_); }),
      reload_(services_.delayed) {}

PanelModel::~PanelModel() {
    loadFlag_->set();
}

std::vector<PanelTab> PanelModel::tabsToSave() const {
    auto tabs = this->tabs();
    if (const auto item = cursorItem())
        tabs[activeTab()].cursorName = std::string(item->name);
    for (std::size_t i = 0; i < tabs.size(); ++i) {
        if (const auto* browse = archiveOfTab(i))
            tabs[i].cursorName = std::string(browse->outermost().place.lastComponent());
    }
    return tabs;
}

std::optional<FileItemView> PanelModel::cursorItem() const {
    if (error() || cursor() >= items().size())
        return std::nullopt;
    return items().view(cursor());
}

bool PanelModel::canGo(Step step) const {
    if (archive() && step == Step::back)
        return true;
    return shown_.history.target(tab().id, step).has_value();
}

ListingView PanelModel::listingView() const {
    const bool showHidden = settings_.get(SettingKeys::showHidden);
    return {tab().sort, showHidden ? ShowHidden::yes : ShowHidden::no, shown_.revealed};
}

void PanelModel::refresh() {
    shown_.sizesStopped = false;
    if (error())
        load(shown_.failedRequest);
    else if (const auto& browse = archive())
        load(toArchive(ArchiveWish::What::read, *browse));
    else
        load(here());
}

void PanelModel::reloadOn(std::string name) {
    const bool isLeaving = loading_ && pendingRequest_.location().path() != location().path();
    if (error() || isLeaving)
        return;
    auto request = here();
    request.selectName = std::move(name);
    load(std::move(request));
}

void PanelModel::takeChange() {
    isStale_ = true;
    changedWhileLoading_ = loading_;
    reloadWhenStale();
}

void PanelModel::navigate(const FileUrl& target) {
    const bool stays = target.path() == tab().path;
    load({.url = target, .step = stays ? Step::stay : Step::navigate});
}

void PanelModel::tryNavigate(const FileUrl& target) {
    const bool stays = target.path() == tab().path;
    load({.url = target, .step = stays ? Step::stay : Step::navigate, .isTyped = true});
}

PanelModel::Request PanelModel::here() const {
    if (const auto& browse = archive())
        return toArchive(ArchiveWish::What::show, *browse);
    return {.url = folder()};
}

PanelModel::Request PanelModel::toArchive(ArchiveWish::What what, ArchiveBrowse browse) const {
    return {.url = folder(), .archive = ArchiveWish{.what = what, .browse = std::move(browse)}};
}

std::optional<PanelModel::Request> PanelModel::above(const std::optional<ArchiveBrowse>& browse,
                                                     const FileUrl& folder) const {
    if (!browse && folder.isRoot())
        return std::nullopt;
    if (!browse)
        return Request{.url = folder.parent(), .step = Step::navigate, .isUpwards = true};
    Request request{.url = this->folder(), .isUpwards = true};
    if (!browse->inner.empty()) {
        request.archive = ArchiveWish{.browse = *browse};
        request.archive->browse.inner = std::string(ArchivePaths::parent(browse->inner));
    } else if (browse->outer) {
        request.archive = ArchiveWish{.browse = *browse->outer};
    }
    return request;
}

void PanelModel::goToParent() {
    // A second press counts from where the first one is still going.
    const bool isGoingUp = loading_ && pendingRequest_.isUpwards;
    auto from = isGoingUp ? std::optional<ArchiveBrowse>() : archive();
    if (isGoingUp && pendingRequest_.archive)
        from = pendingRequest_.archive->browse;
    auto request = above(from, isGoingUp ? pendingRequest_.url : folder());
    if (!request)
        return;
    request->nearestUsable = !request->archive && error() && items().empty();
    load(std::move(*request));
}

void PanelModel::go(Step step) {
    if (archive() && step == Step::back)
        return leaveArchive();
    const auto target = shown_.history.target(tab().id, step);
    if (!target)
        return;
    load({.url = FileUrl(*target, FileUrl::Form::directory), .step = step});
}

void PanelModel::goToInner(std::string inner, int outwards) {
    const auto& shown = archive();
    if (!shown)
        return;
    auto browse = *shown;
    for (; outwards > 0 && browse.outer != nullptr; --outwards)
        browse = ArchiveBrowse(*browse.outer);
    browse.inner = std::move(inner);
    load(toArchive(ArchiveWish::What::show, std::move(browse)));
}

void PanelModel::leaveArchive() {
    if (archive())
        load({.url = folder()});
}

void PanelModel::takePassword(const FileUrl& archiveFile,
                              const std::optional<std::string>& password) {
    const auto take = [&](ArchiveBrowse& browse) {
        if (browse.index->url() == archiveFile)
            browse.password = password;
    };
    if (auto& browse = shown_.archive)
        take(*browse);
    for (auto& [_, browse] : shown_.tabArchives)
        take(browse);
}

bool PanelModel::openItem() {
    if (error()) {
        refresh();
        return true;
    }
    if (cursor() >= items().size())
        return true;
    const auto item = items()[cursor()];
    if (item.isParentLink)
        goToParent();
    else if (archive())
        return openItemOfArchive(item);
    // Nothing here can open a package but going into it.
    else if (item.opensAsFolder() || item.kind == FileKind::package || links_.isPending(item.name))
        navigate(item.resolvedURL());
    else if (ArchivePaths::mayBeArchive(item.kind, item.name))
        load(toArchive(ArchiveWish::What::read, {.place = item.url}));
    else
        return false;
    return true;
}

bool PanelModel::openItemOfArchive(const FileItem& item) {
    const auto& browse = archive();
    if (!browse)
        return false;
    const auto path = ArchivePaths::child(browse->inner, item.name);
    if (item.isFolderLike()) {
        // A link that shows as a folder leads to one.
        goToInner(ArchivePaths::resolved(*browse->index, path).value_or(path));
        return true;
    }
    if (const auto* link = linkTarget(item.name); link != nullptr && link->isBroken)
        return false;
    auto request = toArchive(ArchiveWish::What::enter, *browse);
    request.archive->entry = path; // NOLINT(bugprone-unchecked-optional-access): made just now
    load(std::move(request));
    return true;
}

const ArchiveBrowse* PanelModel::archiveOfTab(std::size_t index) const {
    if (index == activeTab())
        return shown_.archive ? &*shown_.archive : nullptr;
    const auto found = shown_.tabArchives.find(tabs()[index].id);
    return found == shown_.tabArchives.end() ? nullptr : &found->second;
}

void PanelModel::stopLoading() {
    loadFlag_->set();
    ++loadToken_;
    endLoading();
    changedWhileLoading_ = false;
}

void PanelModel::endLoading() {
    loading_ = false;
    pendingRequest_ = {}; // it may keep the copy of an archive
}

bool PanelModel::escape() {
    if (loading_) {
        // Who leaves a reading does not want the next one at once.
        if (pendingRequest_.location().path() == location().path())
            isStale_ = false;
        stopLoading();
        const bool nothingToShow = !error() && items().empty();
        emit changed(nothingToShow
                         ? showFailure({.url = folder()}, Failure::unreadable(folder(), stopped))
                         : PanelChanges(PanelChange::state));
        reloadWhenStale();
        return true;
    }
    if (!error() || ownFolderFailed())
        return false;
    shown_.error.reset();
    load(here());
    return true;
}

void PanelModel::load(Request request) {
    const auto token = ++loadToken_;
    loadFlag_->set();
    loadFlag_ = std::make_shared<CancelFlag>();
    loading_ = true;
    changedWhileLoading_ = false;
    typedFailure_.reset();
    openingFailure_.clear();
    takenFile_ = {};
    reload_.cancel();
    const auto started = services_.now();
    auto path = request.url.path();
    if (path == tab().path && !items().empty())
        request.wasFolder = true;
    if (request.archive)
        path = request.archive->browse.place.path();
    pendingRequest_ = request;

    // Told on the main thread. The worker too keeps the watcher for a while.
    auto onChange = [this, life = std::weak_ptr(life_), token] {
        if (!life.expired())
            folderChanged(token);
    };
    auto work = [services = services_, &cache = sizeCache_, request, view = listingView(),
                 location = location().path(), before = rawItems(), onChange = std::move(onChange),
                 ask = askPassword_, flag = loadFlag_, knownLinks = links_.known(),
                 computesSizes = settings_.get(SettingKeys::autoFolderSizes)]() mutable {
        Loaded loaded;
        // A folder is watched before it is read, so that no change falls between the two.
        auto watcher =
            DirectoryWatcher::start(services.events, services.main, request.url, onChange);
        if (request.archive)
            findInArchive(ArchiveAccess(services, ask, flag), *request.archive, loaded);
        else if (request.nearestUsable)
            loaded.listing =
                openNearestUsable(services.files, request.url, services.volumes, knownLinks);
        else
            loaded.listing = FolderOpener::open(services.files, request.url, ShowHidden::yes,
                                                services.volumes, knownLinks);
        if (request.wasFolder && loaded.listing && loaded.listing->selectName)
            loaded.listing = std::unexpected(Failure::notFound(request.url));
        if (!loaded.listing)
            return loaded;
        auto& [directory, items, selectName, remoteLinks] = *loaded.listing;
        const auto& listed = directory.path();
        if (!loaded.archive && listed != request.url.path())
            watcher = DirectoryWatcher::start(services.events, services.main, directory, onChange);
        loaded.watcher = std::move(watcher);
        loaded.view = view;
        if (listed != location)
            loaded.view.revealed.reset();
        if (request.selectName && items.rowOf(*request.selectName))
            selectName = request.selectName;
        if (!selectName)
            selectName = childTowards(directory, FileUrl(location));
        if (selectName)
            loaded.view.revealed = selectName;
        if (!loaded.archive)
            loaded.knownSizes = knownSizes(cache, items, services.today());
        loaded.items = shownItems(items, loaded.view, loaded.knownSizes);
        if (listed == before.folder().path()) {
            const DirectorySnapshot earlier(before);
            const DirectorySnapshot later(items);
            const auto difference = DirectorySnapshot::compare(earlier, later);
            loaded.isUnchanged = difference.isEmpty();
            loaded.changedNames.assign(difference.changed.begin(), difference.changed.end());
            loaded.removedNames.assign(difference.removed.begin(), difference.removed.end());
            for (const auto& name : loaded.removedNames)
                cache.forget(directory.appending(name).path());
        }
        const auto& onDisk = loaded.archive ? request.url.path() : listed;
        if (const auto space = services.files.freeSpace(onDisk))
            loaded.freeSpace = *space;
        const auto volumes = services.volumes();
        loaded.volumeRoot = FileUrl(Volumes::containing(onDisk, volumes).mountPoint);
        const auto realPath = loaded.watcher ? loaded.watcher->path() : onDisk;
        if (computesSizes && !loaded.archive &&
            Volumes::allowsAutomaticSizes(Volumes::containing(realPath, volumes)))
            loaded.automaticSizes = FolderSizing::Extent{directory, FileUrl(realPath),
                                                         Volumes::withoutAutomaticSizes(volumes)};
        return loaded;
    };
    auto done = [this, token, started, request = std::move(request)](Loaded loaded) {
        if (token != loadToken_)
            return;
        loadEnded_ = services_.now();
        loaded.took = loadEnded_ - started;
        const auto changedNames = std::move(loaded.changedNames);
        emit changed(finish(request, std::move(loaded)));
        if (token != loadToken_)
            return;
        computeAutomatically(changedNames);
        reloadWhenStale();
    };
    runThen(services_.disk, services_.main, std::move(path), life_, std::move(work),
            std::move(done));
    emit changed(PanelChange::state);
}

void PanelModel::folderChanged(int watchedBy) {
    if (loading_ && watchedBy == loadToken_) {
        changedWhileLoading_ = true;
    } else if (watchedBy == watcherToken_) {
        isStale_ = true;
        reloadWhenStale();
    }
}

void PanelModel::reloadWhenStale() {
    if (!isStale_ || loading_ || error() || reload_.isPending())
        return;
    using std::chrono::milliseconds;
    const auto pause = std::max<std::chrono::steady_clock::duration>(leastReloadPause,
                                                                     loadTook_ * reloadPauseFactor);
    const auto wait = std::chrono::ceil<milliseconds>(loadEnded_ + pause - services_.now());
    if (wait <= milliseconds(0))
        load(here());
    else
        reload_.schedule(wait, [this] { load(here()); });
}

PanelChanges PanelModel::finish(const Request& request, Loaded loaded) {
    endLoading();
    loadTook_ = loaded.took;
    if (loaded.listing)
        return showListing(request, std::move(loaded));
    if (request.archive)
        return takeOpening(std::move(loaded));
    services_.log("Složku nejde otevřít: " + loaded.listing.error().message());
    if (request.isTyped) {
        typedFailure_ = std::move(loaded.listing.error());
        return PanelChange::state;
    }
    return showFailure(request, std::move(loaded.listing.error()));
}

void PanelModel::findInArchive(const ArchiveAccess& access, const ArchiveWish& wish,
                               Loaded& loaded) {
    auto found = access.find(wish);
    if (!found) {
        loaded.openingFailure = std::move(found.error());
    } else if (auto& browse = found->browse; !browse) {
        loaded.file = std::move(found->file);
    } else {
        auto listing = ArchiveListing::of(*browse);
        loaded.listing = Listing{listing.items.folder(), listing.items, std::nullopt};
        loaded.knownSizes = std::move(listing.folderSizes);
        loaded.linkTargets = std::move(listing.linkTargets);
        loaded.archive = std::move(browse);
    }
}

PanelChanges PanelModel::takeOpening(Loaded loaded) {
    if (!loaded.openingFailure.empty())
        services_.log(loaded.openingFailure);
    openingFailure_ = std::move(loaded.openingFailure);
    takenFile_ = std::move(loaded.file);
    return PanelChange::state | PanelChange::opening;
}

PanelChanges PanelModel::showFailure(const Request& request, Failure failure) {
    shown_.error = std::move(failure);
    shown_.failedRequest = request;
    if (request.step != Step::stay)
        return PanelChange::state;
    // What the panel showed of its folder is no longer true.
    shown_.archive.reset();
    if (cursor() < items().size())
        activeTabState().cursorName = std::string(items().view(cursor()).name);
    clearRows();
    watcher_.reset();
    return PanelChange::state | PanelChange::items | PanelChange::sizes | PanelChange::cursor |
           takeMarks();
}

void PanelModel::clearRows() {
    automaticSizes_.reset();
    shown_.rawItems = {};
    shown_.freeSpace.reset();
    shown_.sizesStopped = false;
    isStale_ = false;
    sizing_.begin({});
    rebuildItems({});
    shown_.cursor = 0;
}

PanelChanges PanelModel::showListing(const Request& request, Loaded loaded) {
    auto& listing = *loaded.listing;
    auto& current = activeTabState();
    const bool sameFolder = listing.directory.path() == location().path();
    const auto path = loaded.archive ? current.path : listing.directory.path();
    shown_.history.record(current.id, request.step, current.path, path);
    PanelChanges changes = PanelChange::state;
    // A reading of the same folder is no news of the tabs: they are saved after each.
    if (!sameFolder || request.step != Step::stay)
        changes |= PanelChange::tabs;
    if (!sameFolder) {
        current.path = path;
        current.cursorName.reset();
        links_.forget();
        shown_.marks = {};
        shown_.sizesStopped = false;
    }
    if (!sameFolder || loaded.archive) {
        sizing_.begin(loaded.knownSizes);
        changes |= PanelChange::sizes;
    } else {
        links_.askAgain();
        sizing_.forget(loaded.removedNames);
        if (sizing_.learn(loaded.knownSizes))
            changes |= PanelChange::sizes;
    }
    if (request.isVisit || (!sameFolder && !loaded.archive))
        changes |= PanelChange::visit;
    if (loaded.archive)
        links_.know(std::move(loaded.linkTargets));
    shown_.archive = std::move(loaded.archive);
    if (request.readsArchive() && !sameFolder)
        changes |= PanelChange::opening;
    shown_.error.reset();
    shown_.freeSpace = loaded.freeSpace;
    shown_.volumeRoot = std::move(loaded.volumeRoot);
    shown_.revealed = loaded.view.revealed;
    watcher_ = std::move(loaded.watcher);
    automaticSizes_ = std::move(loaded.automaticSizes);
    watcherToken_ = loadToken_;
    isStale_ = changedWhileLoading_;

    const auto view = listingView();
    const bool isOrdered = view.sort.key != SortKey::size || loaded.knownSizes == folderSizes();
    const bool isReady = view == loaded.view && isOrdered;
    const auto& wanted = listing.selectName;
    const bool isReload = sameFolder && !this->items().empty();
    const bool hasNewSizes = changes.testFlag(PanelChange::sizes);
    const bool isInOrder = view.sort.key != SortKey::size || !hasNewSizes;
    if (isReload && loaded.isUnchanged && isInOrder && !wanted) {
        changes |= PanelChange::linkTargets;
        if (hasNewSizes)
            changes |= takeMarks();
    } else {
        auto items =
            isReady ? std::move(loaded.items) : shownItems(listing.items, view, folderSizes());
        const auto row = isReload && !wanted
                             ? CursorPlacement::afterReload(this->items(), cursor(), items)
                             : CursorPlacement::byName(items, wanted ? wanted : current.cursorName);
        shown_.rawItems = std::move(listing.items);
        rebuildItems(std::move(items));
        changes |= PanelChange::items | placeCursor(row) | takeMarks();
    }
    links_.follow(listing.directory, std::move(listing.remoteLinks));
    const auto milliseconds = std::chrono::duration<double, std::milli>(loaded.took).count();
    if (std::isfinite(milliseconds))
        services_.log("Načteno " + std::to_string(rawItems().size()) + " položek za " +
                      std::to_string(std::llround(milliseconds)) + " ms");
    return changes;
}

void PanelModel::rebuildItems(FileItems items) {
    shown_.items = std::move(items);
    // What is not seen must not be marked.
    if (!marks().marked().empty())
        shown_.marks.prune(this->items());
    ++generation_;
}

PanelChanges PanelModel::placeCursor(std::size_t row) {
    shown_.cursor = row;
    return PanelChange::cursor;
}

void PanelModel::setCursor(std::ptrdiff_t row) {
    if (error())
        return;
    const auto last = static_cast<std::ptrdiff_t>(items().size()) - 1;
    const auto target = static_cast<std::size_t>(std::max<std::ptrdiff_t>(std::min(row, last), 0));
    if (target != cursor())
        emit changed(placeCursor(target));
}

bool PanelModel::jumpTo(std::string_view text) {
    const auto wanted = foldedText(text);
    for (std::size_t row = 0; row < items().size(); ++row) {
        const auto item = items().view(row);
        if (item.isParentLink || !lengthOfPrefix(item.name, wanted))
            continue;
        setCursor(static_cast<std::ptrdiff_t>(row));
        return true;
    }
    return false;
}

void PanelModel::chooseSort(SortKey key) {
    activeTabState().sort = tab().sort.choosing(key);
    emit changed(PanelChange::tabs | rebuildFromRaw());
}

void PanelModel::takeShowHidden() {
    emit changed(rebuildFromRaw());
    computeAutomatically({});
}

PanelChanges PanelModel::rebuildFromRaw() {
    if (items().empty())
        return {};
    auto items = shownItems(rawItems(), listingView(), folderSizes());
    const auto row = CursorPlacement::afterReload(this->items(), cursor(), items);
    rebuildItems(std::move(items));
    return PanelChange::items | placeCursor(row) | takeMarks();
}

// Sizes of folders

void PanelModel::takeSizes() {
    PanelChanges changes = PanelChange::sizes;
    if (tab().sort.key == SortKey::size)
        changes |= rebuildFromRaw();
    else if (!marks().marked().empty())
        changes |= takeMarks();
    emit changed(changes);
}

void PanelModel::markAndSize() {
    const auto item = cursorItem();
    if (!item)
        return;
    std::vector<FolderSizing::Job> jobs;
    if (canBeSized(*item) && !archive())
        jobs.push_back({.name = std::string(item->name)});
    if (!marks().isMarked(item->name))
        toggleMark(cursor());
    sizing_.start({folder(), folder()}, std::move(jobs), FolderSizing::Purpose::asked);
}

bool PanelModel::sizeAllFolders() {
    std::vector<FolderSizing::Job> jobs;
    for (std::size_t row = 0; row < items().size(); ++row) {
        if (const auto item = items().view(row); canBeSized(item))
            jobs.push_back({.name = std::string(item.name)});
    }
    if (jobs.empty() || error() || archive())
        return false;
    sizing_.start({folder(), folder()}, std::move(jobs), FolderSizing::Purpose::asked);
    return true;
}

void PanelModel::computeAutomatically(const std::vector<std::string>& changedNames) {
    if (!automaticSizes_ || error() || shown_.sizesStopped)
        return;
    const NameSet changed(changedNames.begin(), changedNames.end());
    std::vector<FolderSizing::Job> jobs;
    // From the top down, as they are seen.
    for (std::size_t row = 0; row < items().size(); ++row) {
        const auto item = items().view(row);
        if (!canBeSized(item))
            continue;
        const bool isChanged = changed.contains(item.name);
        if (isChanged || !folderSizes().contains(item.name))
            jobs.push_back({.name = std::string(item.name), .takeKnown = !isChanged});
    }
    sizing_.start(*automaticSizes_, std::move(jobs), FolderSizing::Purpose::automatic);
}

bool PanelModel::stopSizing() {
    if (!sizing_.stop())
        return false;
    shown_.sizesStopped = true;
    emit changed(PanelChange::sizes);
    return true;
}

} // namespace fennik::app
