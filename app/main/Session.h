#pragma once

#include "app/main/Options.h"
#include "app/model/AppModel.h"
#include "app/system/ColorScheme.h"
#include "app/system/MainThread.h"
#include "app/ui/Icons.h"
#include "app/ui/MainWindow.h"
#include "app/ui/Theme.h"
#include "core/base/BackgroundPool.h"

#include <chrono>

namespace fennik::app {

/// Everything that one run of the program consists of, built in order and taken down in reverse.
/// Lives on the main thread, inside a QApplication.
class Session {
public:
    explicit Session(const Options& options);

    ui::MainWindow& window() { return window_; }
    AppModel& app() { return app_; }

    /// Shows the window, in the colours of the desktop where they are asked for, and lists the
    /// panels. Returns at once.
    void start();

    /// Waits for the workers. When some are stuck, the process must end without running static
    /// destructors.
    BackgroundPool::ShutDown shutDown();

private:
    void show();

    Options::Look look_;
    system::ColorScheme colorScheme_;
    BackgroundPool disk_;
    system::MainThread main_;
    ui::Appearance systemAppearance_;
    ui::Theme theme_;
    ui::Icons icons_;
    AppModel app_;
    ui::MainWindow window_;
    bool isListing_ = false;
};

} // namespace fennik::app
