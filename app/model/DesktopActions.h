#pragma once

#include "app/model/ports/Workspace.h"
#include "core/base/Date.h"
#include "core/operations/JobSnapshot.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fennik::app {

class AppModel;

/// What the application does with the desktop around it: opens files and folders in other programs,
/// tells of jobs while nobody looks at the window, keeps the computer awake for them, and takes the
/// paths of a second start. Lives on the main thread.
class DesktopActions {
public:
    /// Both outlive this object. `now` gives the time of day.
    DesktopActions(AppModel& app, Workspace& workspace, std::function<Date()> now);

    void open(const FileUrl& file);
    /// The file under the cursor.
    void edit();
    /// `items`, which lie in the shown folder; in an archive, the archive.
    void reveal(std::vector<FileUrl> items);
    /// In the folder of the active panel.
    void openTerminal();
    /// The absolute paths that a second start was given, for tabs of the panels. They wait until
    /// no dialog is open that is about what the panels show.
    void openPaths(std::optional<std::string> left, std::optional<std::string> right);
    void tellEnd(const JobSnapshot& job);

private:
    void takeJobs();
    void takeDialog();
    Workspace::Done failureInToast();

    using Paths = std::pair<std::optional<std::string>, std::optional<std::string>>;

    AppModel& app_;
    Workspace& workspace_;
    std::function<Date()> now_;
    Workspace::Sleep sleep_ = Workspace::Sleep::allowed;
    std::vector<Paths> waitingPaths_;
    std::weak_ptr<const void> toldQuestion_; ///< the last one that a notification told of
    QObject listener_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< gone with this object
};

} // namespace fennik::app
