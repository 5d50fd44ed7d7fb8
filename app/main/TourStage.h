#pragma once

#include "app/main/Session.h"
#include "app/main/TourFiles.h"

#include <QString>

#include <chrono>
#include <functional>

class QWidget;

namespace fennik::app {

/// The window of a session as its user handles it, for one scene of the tour. Main thread only.
class TourStage {
public:
    /// Both outlive the stage. Waits until the window shows the panels.
    TourStage(Session& session, const TourFiles& files);

    Session& session() { return session_; }
    AppModel& app() { return session_.app(); }
    ui::MainWindow& window() { return session_.window(); }
    std::string path(std::string_view name) const { return files_.path(name); }

    void perform(KAction action);
    void press(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier);
    /// Holds a modifier down.
    void hold(Qt::Key modifier);
    void type(const QString& text);
    /// Puts the cursor of the active panel on the item that begins so.
    void go(std::string_view name);
    /// Lists another folder in a panel.
    void show(PanelSide side, std::string_view name);

    /// Runs the program until `condition` holds or it takes too long.
    void wait(const std::function<bool()>& condition);
    /// Runs the program for a while.
    void wait(std::chrono::milliseconds time);
    /// Runs the program until nothing is being read.
    void settle();

    /// The window with the menus that are open over it; or another window that has come up.
    QImage picture();

private:
    Session& session_;
    const TourFiles& files_;
};

} // namespace fennik::app
