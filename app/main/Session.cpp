#include "app/main/Session.h"

#include "app/model/CommandLine.h"
#include "app/model/MemorySettings.h"
#include "app/system/KeyboardLayouts.h"
#include "app/system/SettingsFile.h"
#include "core/base/CurrentDate.h"
#include "core/platform/Memory.h"
#include "core/platform/Threads.h"
#include "core/platform/UserFolders.h"
#include "core/platform/Volumes.h"

#include <QApplication>
#include <QTimer>

#include <iostream>
#include <utility>

namespace fennik::app {

namespace {

using ui::Appearance;

/// The colours should be known before the first picture, but nobody waits longer for them.
constexpr int colorPatience = 60;  // ms
constexpr int paintPatience = 100; // ms
constexpr auto stuckAfter = std::chrono::seconds(2);
constexpr auto workerPatience = std::chrono::milliseconds(500);
/// What a cancelled job has left half written is removed, and what is being moved arrives whole.
constexpr auto filePatience = std::chrono::seconds(10);

/// Of a single file that is opened out of an archive.
constexpr std::int64_t mostBytesTaken = std::int64_t(4) << 30;

/// Attempts on one remote volume wait for each other when it does not answer. Local folders do not:
/// a link in one of them may lead to a dead volume, and must not hold up its neighbours.
std::string laneOf(const std::string& path) {
    const auto volume = Volumes::containing(path, Volumes::mounted());
    return volume.isRemote ? volume.mountPoint : path;
}

void logTo(bool verbose, const std::string& line) {
    if (verbose)
        std::cerr << line + '\n';
}

} // namespace

Session::Session(const Options& options)
    : highContrast_(options.highContrast),
      reducedMotion_(options.reducedMotion),
      left_(absolutePath(options.left)),
      right_(absolutePath(options.right)),
      disk_(laneOf),
      sizingDisk_(laneOf, stuckAfter, Threads::giveWay),
      temporaryPlaces_(UserFolders::cache(), sizingDisk_, mostBytesTaken),
      events_(makeFolderEvents()),
      workspace_(disk_, main_),
      editors_(disk_, main_),
      settings_(makeSettings(options.task)),
      layout_(system::makeKeyboardLayout()),
      systemAppearance_(ui::appearanceOf(QApplication::palette())),
      theme_(systemAppearance_, options.textScale),
      icons_(theme_),
      app_({.panels = {.files = systemFileSystem(),
                       .disk = disk_,
                       .sizingDisk = sizingDisk_,
                       .main = main_,
                       .delayed = main_,
                       .events = *events_,
                       .archives = archives_,
                       .temporaryPlaces = temporaryPlaces_,
                       .volumes = Volumes::mounted,
                       .now = [] { return std::chrono::steady_clock::now(); },
                       .today = currentDate,
                       .log = [verbose = options.verbose](
                                  const std::string& line) { logTo(verbose, line); }},
            .settings = *settings_,
            .clipboard = clipboard_,
            .transferWorker = transfers_,
            .actionsWorker = actions_,
            .trash = trash_,
            .packer = packer_,
            .workspace = workspace_,
            .previews = previews_},
           UserFolders::home()),
      look_(options.look, systemAppearance_, app_, theme_),
      shortcuts_(
          KActions::defaultMapOffTheMac(),
          [this] {
              auto saved = app_.settings().get(SettingKeys::shortcuts).bytes;
              if (saved.empty())
                  return std::optional<std::string>();
              // The first edit would replace what cannot be read, another version's for example.
              if (!ShortcutMap::fromJson(saved))
                  app_.settings().set(SettingKeys::unreadableShortcuts, {saved});
              return std::optional(std::move(saved));
          },
          [this](std::string map) {
              app_.settings().set(SettingKeys::shortcuts, {std::move(map)});
          }),
      window_({app_, shortcuts_, theme_, icons_, &editors_}, *layout_) {
    Memory::returnLargeBlocks();
    theme_.setContrast(highContrast_ ? ui::Contrast::high : ui::Contrast::normal);
    ui::Theme::setReducedMotion(reducedMotion_);
    app_.settings().registerDefaults();
    window_.resize(options.width, options.height);
    QObject::connect(&workspace_, &system::DesktopWorkspace::windowWanted, &window_,
                     [this](const QString& token) { bringToFront(token.toStdString()); });
}

void Session::takeSecondStart(const system::SecondStart& start) {
    app_.openPaths(start.left, start.right);
    bringToFront(start.activationToken);
}

void Session::bringToFront(const std::string& activationToken) {
    // There the toolkit takes it from its environment.
    if (!activationToken.empty() &&
        QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(activationToken));
    window_.comeToFront();
}

void Session::start(std::function<void()> listing) {
    listing_ = std::move(listing);
    QObject::connect(
        &colorScheme_, &system::ColorScheme::highContrastPreferred, &theme_, [this](bool isHigh) {
            theme_.setContrast(isHigh || highContrast_ ? ui::Contrast::high : ui::Contrast::normal);
        });
    QObject::connect(
        &colorScheme_, &system::ColorScheme::reducedMotionPreferred, &theme_,
        [this](bool isReduced) { ui::Theme::setReducedMotion(isReduced || reducedMotion_); });
    using Preference = system::ColorScheme::Preference;
    QObject::connect(&colorScheme_, &system::ColorScheme::preferred, &look_,
                     [this](Preference preference) {
                         look_.setDesktop(preference == Preference::dark    ? Appearance::dark
                                          : preference == Preference::light ? Appearance::light
                                                                            : systemAppearance_);
                     });
    QObject::connect(&colorScheme_, &system::ColorScheme::answered, &window_, [this] { show(); });
    QTimer::singleShot(look_.followsDesktop() ? colorPatience : 0, &window_, [this] { show(); });
    colorScheme_.start();
}

void Session::show() {
    if (window_.isVisible())
        return;
    // The workers would take the processors that the first picture needs. A window that nobody
    // sees is not painted, but its panels are filled all the same.
    const auto list = [this] {
        if (std::exchange(isListing_, true))
            return;
        app_.start(left_, right_);
        listing_();
    };
    QObject::connect(&window_, &ui::MainWindow::firstPainted, &window_, list);
    QTimer::singleShot(paintPatience, &window_, list);
    window_.show();
}

std::unique_ptr<SettingsStore> Session::makeSettings(Options::Task task) {
    // A picture neither depends on what was kept before nor leaves anything behind.
    if (task != Options::Task::window)
        return std::make_unique<MemorySettings>();
    return std::make_unique<system::SettingsFile>(
        system::SettingsFile::configFolder(UserFolders::home().path()), writer_, main_,
        [this](const std::string& sentence) { app_.showToast(sentence, Toast::Kind::error); });
}

ShutDown Session::shutDown() {
    app_.saveNow();
    app_.stopJobs();
    const bool commandsHaveEnded = app_.commandLine().shutDown();
    // After the jobs, which may still read what lies there.
    transfers_.execute([this] { temporaryPlaces_.close(); });
    // Settings first: they are what the user would miss.
    auto result = writer_.shutDown(workerPatience);
    if (!commandsHaveEnded)
        result = ShutDown::threadsLeft;
    for (auto* worker : {&actions_, &transfers_}) {
        if (worker->shutDown(filePatience) == ShutDown::threadsLeft)
            result = ShutDown::threadsLeft;
    }
    for (auto* pool : {&disk_, &sizingDisk_}) {
        if (pool->shutDown(workerPatience) == ShutDown::threadsLeft)
            result = ShutDown::threadsLeft;
    }
    return result;
}

} // namespace fennik::app
