#pragma once

#include "app/model/PanelServices.h"
#include "core/base/DelayedWork.h"
#include "core/base/FileUrl.h"
#include "core/listing/PathCompleter.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace fennik::app {

/// Folders that complete a path while it is being typed. They are found on workers; answers to what
/// has been typed over are dropped, and a disk that does not answer holds up nobody. Lives on the
/// main thread.
class PathSuggestions {
public:
    /// `changed` is called when there are other suggestions.
    PathSuggestions(PanelServices services, FileUrl home, std::function<void()> changed);

    /// Asks for folders that complete `typed`, relative ones seen from `base`.
    void ask(std::string typed, FileUrl base, PathCompleter::IncludeHidden hidden);
    /// Drops what was found and what was asked.
    void clear();

    /// Absolute paths in bytes, in the order in which they are shown.
    const std::vector<std::string>& found() const { return found_; }

private:
    PanelServices services_;
    FileUrl home_;
    std::function<void()> changed_;
    std::vector<std::string> found_;
    DelayedWork question_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< of the newest question
};

} // namespace fennik::app
