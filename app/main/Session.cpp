#include "app/main/Session.h"

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

#include <filesystem>
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

std::optional<std::string> pathOf(const std::optional<std::string>& given) {
    if (!given)
        return std::nullopt;
    std::error_code error;
    const auto workingFolder = std::filesystem::current_path(error).string();
    // A working folder that was removed has no path any more; nothing is found below this one.
    return absolutePath(*given, error ? "/proc/self/cwd" : workingFolder);
}

Appearance appearanceFor(Options::Look look, Appearance ofSystem) {
    switch (look) {
    case Options::Look::light:
        return Appearance::light;
    case Options::Look::dark:
        return Appearance::dark;
    case Options::Look::system:
        break;
    }
    return ofSystem;
}

} // namespace

Session::Session(const Options& options)
    : look_(options.look),
      left_(pathOf(options.left)),
      right_(pathOf(options.right)),
      disk_(laneOf),
      sizingDisk_(laneOf, stuckAfter, Threads::giveWay),
      temporaryPlaces_(UserFolders::cache(), sizingDisk_, mostBytesTaken),
      events_(makeFolderEvents()),
      settings_(makeSettings(options.task)),
      layout_(system::makeKeyboardLayout()),
      systemAppearance_(ui::appearanceOf(QApplication::palette())),
      theme_(appearanceFor(look_, systemAppearance_)),
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
            .packer = packer_},
           UserFolders::home()),
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
      window_({app_, shortcuts_, theme_, icons_}, *layout_) {
    Memory::returnLargeBlocks();
    app_.settings().registerDefaults();
    window_.resize(options.width, options.height);
}

void Session::start() {
    if (look_ != Options::Look::system) {
        show();
        return;
    }
    using Preference = system::ColorScheme::Preference;
    QObject::connect(&colorScheme_, &system::ColorScheme::preferred, &theme_,
                     [this](Preference preference) {
                         const auto chosen = preference == Preference::dark    ? Appearance::dark
                                             : preference == Preference::light ? Appearance::light
                                                                               : systemAppearance_;
                         theme_.setAppearance(chosen);
                     });
    QObject::connect(&colorScheme_, &system::ColorScheme::answered, &window_, [this] { show(); });
    QTimer::singleShot(colorPatience, &window_, [this] { show(); });
    colorScheme_.start();
}

void Session::show() {
    if (window_.isVisible())
        return;
    // The workers would take the processors that the first picture needs. A window that nobody
    // sees is not painted, but its panels are filled all the same.
    const auto list = [this] {
        if (!std::exchange(isListing_, true))
            app_.start(left_, right_);
    };
    QObject::connect(&window_, &ui::MainWindow::firstPainted, &window_, list);
    QTimer::singleShot(paintPatience, &window_, list);
    window_.show();
}

std::unique_ptr<SettingsStore> Session::makeSettings(Options::Task task) {
    // A picture neither depends on what was kept before nor leaves anything behind.
    if (task == Options::Task::screenshot)
        return std::make_unique<MemorySettings>();
    return std::make_unique<system::SettingsFile>(
        system::SettingsFile::configFolder(UserFolders::home().path()), writer_, main_,
        [this](const std::string& sentence) { app_.showToast(sentence, Toast::Kind::error); });
}

ShutDown Session::shutDown() {
    app_.saveNow();
    app_.stopJobs();
    // After the jobs, which may still read what lies there.
    transfers_.execute([this] { temporaryPlaces_.close(); });
    // Settings first: they are what the user would miss.
    auto result = writer_.shutDown(workerPatience);
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
