#pragma once

#include "core/base/Executor.h"
#include "core/base/FileUrl.h"
#include "core/platform/FolderEvents.h"

#include <functional>
#include <memory>
#include <string>

namespace fennik::app {

/// Calls back on the main thread whenever something directly inside one folder has changed. Once
/// the last reference was dropped on the main thread, nothing is called any more, not even for
/// changes that are known already.
class DirectoryWatcher {
public:
    /// Waits for the disk, and so is called on a worker. Nothing when the system refuses to watch.
    /// `main` outlives `events`.
    static std::shared_ptr<DirectoryWatcher> start(FolderEvents& events, Executor& main,
                                                   const FileUrl& folder,
                                                   std::function<void()> onChange);

    /// The watched folder, without links where it could be resolved.
    const std::string& path() const { return path_; }

private:
    DirectoryWatcher(std::string path, std::function<void()> onChange);

    std::string path_;
    std::function<void()> onChange_;
    std::unique_ptr<FolderEvents::Watch> stream_;
};

} // namespace fennik::app
