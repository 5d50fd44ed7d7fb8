#pragma once

#include "app/commands/ShortcutStore.h"
#include "app/main/LookControl.h"
#include "app/main/Options.h"
#include "app/model/AppModel.h"
#include "app/model/ports/KeyboardLayout.h"
#include "app/model/ports/SettingsStore.h"
#include "app/preview/HelperDecoder.h"
#include "app/system/ColorScheme.h"
#include "app/system/DesktopClipboard.h"
#include "app/system/DesktopWorkspace.h"
#include "app/system/InstalledEditors.h"
#include "app/system/MainThread.h"
#include "app/system/SingleInstance.h"
#include "app/ui/Icons.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Theme.h"
#include "core/archives/helper/HelperArchives.h"
#include "core/archives/helper/HelperPacker.h"

#include "core/base/BackgroundPool.h"
#include "core/base/SerialWorker.h"
#include "core/operations/Trashes.h"
#include "core/platform/FolderEvents.h"
#include "core/platform/TemporaryPlaces.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace fennik::app {

/// Everything that one run of the program consists of, built in order and taken down in reverse.
/// Lives on the main thread, inside a QApplication.
class Session {
public:
    explicit Session(const Options& options);

    ui::MainWindow& window() { return window_; }
    AppModel& app() { return app_; }

    /// Shows the window, in the colours of the desktop where they are asked for, and lists the
    /// panels. Returns at once; `listing` is called when the panels are being listed.
    void start(std::function<void()> listing = [] {});

    /// What a second start was given is shown in this window.
    void takeSecondStart(const system::SecondStart& start);

    /// Keeps the tabs for the next time, and waits for the workers. When some are stuck, the
    /// process must end without running static destructors.
    ShutDown shutDown();

private:
    void show();
    /// The token of the desktop, which may be empty, allows it.
    void bringToFront(const std::string& activationToken);

    std::unique_ptr<SettingsStore> makeSettings(Options::Task task);

    bool highContrast_; ///< whatever the desktop wants
    bool reducedMotion_;
    std::optional<std::string> left_; ///< absolute paths, as they were asked for
    std::optional<std::string> right_;
    system::ColorScheme colorScheme_;
    system::MainThread main_;
    BackgroundPool disk_;
    BackgroundPool sizingDisk_; ///< gives way to all that the user waits for
    SerialWorker writer_;
    SerialWorker transfers_;
    SerialWorker actions_;
    SystemTrash trash_;
    HelperArchives archives_;
    HelperPacker packer_;
    HelperDecoder previews_;
    TemporaryPlaces temporaryPlaces_;
    std::unique_ptr<FolderEvents> events_;
    system::DesktopClipboard clipboard_;
    system::DesktopWorkspace workspace_;
    system::InstalledEditors editors_;
    std::unique_ptr<SettingsStore> settings_;
    std::unique_ptr<KeyboardLayout> layout_;
    ui::Appearance systemAppearance_;
    ui::Theme theme_;
    ui::Icons icons_;
    AppModel app_;
    LookControl look_;
    ShortcutStore shortcuts_;
    ui::MainWindow window_;
    bool isListing_ = false;
    std::function<void()> listing_;
};

} // namespace fennik::app
