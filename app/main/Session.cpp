#include "app/main/Session.h"

#include "core/platform/Memory.h"
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
constexpr auto workerPatience = std::chrono::milliseconds(500);

/// Attempts on one remote volume wait for each other when it does not answer. Local folders do not:
/// a link in one of them may lead to a dead volume, and must not hold up its neighbours.
std::string laneOf(const std::string& path) {
    const auto volume = Volumes::containing(path, Volumes::mounted());
    return volume.isRemote ? volume.mountPoint : path;
}

PanelServices services(DiskExecutor& disk, Executor& main, bool verbose) {
    return {.files = systemFileSystem(),
            .disk = disk,
            .main = main,
            .now = [] { return std::chrono::steady_clock::now(); },
            .log =
                [verbose](const std::string& line) {
                    if (verbose)
                        std::cerr << line + '\n';
                }};
}

std::string pathOf(const std::optional<std::string>& given) {
    if (!given)
        return UserFolders::home().path();
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
      disk_(laneOf),
      systemAppearance_(ui::appearanceOf(QApplication::palette())),
      theme_(appearanceFor(look_, systemAppearance_)),
      icons_(theme_),
      app_(services(disk_, main_, options.verbose), UserFolders::home(), pathOf(options.left),
           pathOf(options.right)),
      window_(app_, theme_, icons_) {
    Memory::returnLargeBlocks();
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
            app_.start();
    };
    QObject::connect(&window_, &ui::MainWindow::firstPainted, &window_, list);
    QTimer::singleShot(paintPatience, &window_, list);
    window_.show();
}

BackgroundPool::ShutDown Session::shutDown() {
    return disk_.shutDown(workerPatience);
}

} // namespace fennik::app
