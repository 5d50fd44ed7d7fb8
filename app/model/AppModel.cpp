#include "app/model/AppModel.h"

#include "app/model/CommandLine.h"
#include "app/model/DesktopActions.h"
#include "app/model/ItemInspection.h"
#include "app/model/QuickPreview.h"
#include "app/model/SavedState.h"
#include "core/base/DisplayText.h"
#include "core/base/PathText.h"
#include "core/listing/FileMask.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

namespace {

constexpr double sizesStayFor = 600; // s
constexpr auto saveDelay = std::chrono::milliseconds(300);
constexpr auto toastStaysFor = std::chrono::seconds(3);
constexpr std::size_t mostMasks = 5;
constexpr double bytesOfMegabyte = 1e6;
constexpr double mostMegabytes = 1e9; ///< a second

/// What is stored of the tabs. A text that somebody wrote into the file by hand has its commas
/// taken for the ends of texts.
std::string storedPanels(const Settings& settings) {
    auto stored = settings.get(SettingKeys::panels).bytes;
    if (!stored.empty())
        return stored;
    const SettingKey<std::vector<std::string>> asTexts{SettingKeys::panels.name};
    for (const auto& text : settings.get(asTexts))
        stored.append(stored.empty() ? "" : ",").append(text);
    return stored;
}

} // namespace

AppModel::AppModel(AppServices services, FileUrl home)
    : services_(std::move(services)),
      home_(std::move(home)),
      settings_(services_.settings, [this](std::string_view name) { takeSetting(name); }),
      places_(settings_),
      pathSuggestions_(services_.panels, home_, [this] { emit changed(AppChange::suggestions); }),
      sizeCache_(sizesStayFor),
      passwords_(
          services_.panels.main,
          [this](std::shared_ptr<PendingPassword> pending) { takePassword(std::move(pending)); }),
      left_(PanelSide::left, services_.panels, settings_, sizeCache_,
            passwords_.askingFor(PendingPassword::Asker::panel), home_.path()),
      right_(PanelSide::right, services_.panels, settings_, sizeCache_,
             passwords_.askingFor(PendingPassword::Asker::panel), home_.path()),
      leftRestoration_(left_, services_.panels, home_),
      rightRestoration_(right_, services_.panels, home_),
      preview_(services_.panels, [this] { emit changed(AppChange::outcome); }),
      nextClash_(services_.panels.delayed),
      saveWork_(services_.panels.delayed),
      toastWork_(services_.panels.delayed),
      hideWork_(services_.panels.delayed),
      actions_(services_.actionsWorker, services_.panels.main, services_.panels.delayed,
               [this] { emit changed(AppChange::busy); }),
      engine_({.worker = services_.transferWorker,
               .journal = journal_,
               .trash = services_.trash,
               .now = services_.panels.now,
               .today = services_.panels.today}),
      bridge_(engine_, services_.panels.main,
              {.jobsChanged = [this](std::vector<JobSnapshot> jobs) { takeJobs(std::move(jobs)); },
               .jobFinished = [this](const JobSnapshot& job,
                                     const TransferRequest& request) { takeEnd(job, request); },
               .clashed =
                   [this](std::shared_ptr<PendingConflict> pending) {
                       takeClash(std::move(pending));
                   }}),
      commandLine_(
          std::make_unique<CommandLine>(services_.panels, settings_, services_.clipboard, home_,
                                        [this]() -> PanelModel& { return activePanel(); })),
      desktop_(
          std::make_unique<DesktopActions>(*this, services_.workspace, services_.panels.today)),
      quickPreview_(std::make_unique<QuickPreview>(services_.panels, settings_, services_.previews,
                                                   [this] { emit changed(AppChange::preview); })),
      inspection_(std::make_unique<ItemInspection>(services_.panels,
                                                   [this] { emit changed(AppChange::details); })) {
    takeThrottle();
    restore();
    followPanel(PanelSide::left);
    followPanel(PanelSide::right);
}

AppModel::~AppModel() = default;

void AppModel::takeSetting(std::string_view name) {
    if (name == SettingKeys::throttleMBps.name)
        takeThrottle();
    if (name == SettingKeys::showHidden.name) {
        left_.takeShowHidden();
        right_.takeShowHidden();
    }
    emit changed(AppChange::settings);
}

void AppModel::takeThrottle() {
    const auto megabytes = std::min(settings_.get(SettingKeys::throttleMBps), mostMegabytes);
    engine_.setThrottle(megabytes > 0 ? std::optional(std::int64_t(megabytes * bytesOfMegabyte))
                                      : std::nullopt);
}

void AppModel::restore() {
    savedState_ = storedPanels(settings_);
    const auto saved = SavedState::fromJson(savedState_);
    // The tabs that are saved next take its place, and somebody may still want to look into it.
    if (!savedState_.empty() && (!saved || saved->isEmpty())) {
        settings_.set(SettingKeys::unreadablePanels, {savedState_});
        services_.panels.log(
            "Uložené záložky nejde přečíst, jejich text zůstává v nastavení pod „" +
            std::string(SettingKeys::unreadablePanels.name) + "“.");
    }
    if (!saved)
        return;
    const auto take = [](PanelModel& panel, const SavedPanel& from) {
        if (!from.tabs.empty())
            panel.replaceTabs(PanelTabs(from.tabs, from.active));
    };
    take(left_, saved->left);
    take(right_, saved->right);
    activeSide_ = saved->activeSide;
}

void AppModel::start(const std::optional<std::string>& left,
                     const std::optional<std::string>& right) {
    services_.panels.temporaryPlaces.sweep();
    const auto saved = SavedState::fromJson(savedState_);
    leftRestoration_.start(left, pathFromStored(settings_.get(SettingKeys::leftPath)).value_or(""),
                           saved && !saved->left.tabs.empty());
    rightRestoration_.start(right,
                            pathFromStored(settings_.get(SettingKeys::rightPath)).value_or(""),
                            saved && !saved->right.tabs.empty());
}

void AppModel::openPaths(std::optional<std::string> left, std::optional<std::string> right) {
    desktop_->openPaths(std::move(left), std::move(right));
}

void AppModel::followPanel(PanelSide side) {
    auto& followed = panel(side);
    connect(&followed, &PanelModel::changed, this, [this, &followed](PanelChanges changes) {
        if (changes.testFlag(PanelChange::tabs))
            scheduleSave();
        if (changes.testFlag(PanelChange::opening))
            takeOpening(followed);
        if (changes.testFlag(PanelChange::visit)) {
            places_.noteRecent(followed.tab().path);
            emit changed(AppChange::places);
        }
        quickPreview_->follow(followed, changes);
        const bool isRenamed = renameRequest_ && renameRequest_->side == followed.side();
        const bool isGone = followed.folder() != renameFolder_ ||
                            (isRenamed && !followed.items().rowOf(renameRequest_->name));
        if (isRenamed && !isRenaming_ && isGone)
            cancelRename();
    });
}

void AppModel::scheduleSave() {
    saveWork_.schedule(saveDelay, [this] { saveNow(); });
}

void AppModel::saveNow() {
    saveWork_.cancel();
    const SavedState state{.left = {left_.tabsToSave(), left_.activeTab()},
                           .right = {right_.tabsToSave(), right_.activeTab()},
                           .activeSide = activeSide_};
    auto json = state.toJson();
    if (json == savedState_)
        return;
    settings_.set(SettingKeys::panels, {json});
    savedState_ = std::move(json);
}

void AppModel::activate(PanelSide side) {
    if (side == activeSide_)
        return;
    quickPreview_->close();
    activeSide_ = side;
    scheduleSave();
    emit changed(AppChange::activeSide);
}

void AppModel::addFavorite() {
    const auto folder = activePanel().folder();
    if (!places_.addFavorite(folder.path())) {
        showToast("Už je v oblíbených");
        return;
    }
    emit changed(AppChange::places);
    showToast("Přidáno do oblíbených: " + displayText(folder.lastComponent()), Toast::Kind::ok);
}

void AppModel::removeFavorite(const std::string& path) {
    places_.removeFavorite(path);
    emit changed(AppChange::places);
    showToast("Odebráno z oblíbených");
}

void AppModel::toggleFavorite() {
    const auto path = activePanel().tab().path;
    if (places_.isFavorite(path))
        removeFavorite(path);
    else
        addFavorite();
}

void AppModel::requestPathField(PanelSide side) {
    activate(side);
    focusPathRequest_ = FocusRequest{side, ++lastToken_};
    emit changed(AppChange::request);
}

void AppModel::requestPlaces() {
    placesRequest_ = FocusRequest{activeSide_, ++lastToken_};
    emit changed(AppChange::request);
}

void AppModel::applyMask(Marking marking, const std::string& text) {
    const FileMask mask(text);
    auto masks = maskHistory();
    std::erase(masks, text);
    masks.insert(masks.begin(), text);
    masks.resize(std::min(masks.size(), mostMasks));
    settings_.set(SettingKeys::maskHistory, std::move(masks));
    closeDialog();
    activePanel().markByMask(mask, marking);
}

std::vector<std::string> AppModel::maskHistory() const {
    auto masks = settings_.get(SettingKeys::maskHistory);
    masks.resize(std::min(masks.size(), mostMasks));
    return masks;
}

void AppModel::showToast(std::string text, Toast::Kind kind) {
    showToast(Toast{.text = std::move(text), .kind = kind});
}

void AppModel::showToast(Toast toast) {
    toast_ = std::move(toast);
    toastWork_.schedule(toastStaysFor, [this] {
        toast_.reset();
        emit changed(AppChange::toast);
    });
    emit changed(AppChange::toast);
}

} // namespace fennik::app
