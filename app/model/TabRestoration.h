#pragma once

#include "app/model/PanelModel.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

/// Brings a panel back to life at start: finds out on workers which of its tabs have lost their
/// folder, drops those, and lists the active tab as soon as its folder is known to exist. A tab
/// that does not answer within a second stays, and so does what the user has made of the panel by
/// then. Lives on the main thread.
class TabRestoration {
public:
    /// `panel` holds the saved tabs already, or one at `home` where none were saved.
    TabRestoration(PanelModel& panel, PanelServices services, FileUrl home);

    /// Shows `given` in a tab of its own, where there is a path given. Where no tab is left, and
    /// where none was saved, the panel opens at `formerPath` if that is a folder, else at home.
    void start(std::optional<std::string> given, std::string formerPath, bool hasSavedTabs);

private:
    void ask(std::vector<PanelTab> tabs);
    void take(const std::vector<PanelTab>& asked, const std::vector<bool>& exist);
    void finish();
    /// Unless the user was faster.
    void listTab();

    PanelModel& panel_;
    PanelServices services_;
    FileUrl home_;
    std::string formerPath_;
    bool formerPathExists_ = false;
    bool hasTabs_ = false;             ///< of its own, not just the one that stands in for them
    std::size_t questions_ = 0;        ///< not yet answered
    std::map<Uuid, std::string> gone_; ///< with the folder that each had lost
    DelayedWork deadline_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< gone with this object
};

} // namespace fennik::app
