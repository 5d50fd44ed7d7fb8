#pragma once

#include "core/archives/EntryStream.h"
#include "core/base/Date.h"
#include "core/base/DelayedWork.h"
#include "core/base/Executor.h"
#include "core/platform/FileSystem.h"
#include "core/platform/FolderEvents.h"
#include "core/platform/TemporaryPlaces.h"
#include "core/platform/Volumes.h"

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace fennik::app {

/// What a panel needs of the world around it. All of it outlives the panels.
struct PanelServices {
    const FileSystem& files;
    DiskExecutor& disk;
    DiskExecutor& sizingDisk; ///< for work that takes long, so that listings never wait for it
    Executor& main;
    DelayedExecutor& delayed;
    FolderEvents& events;
    const ArchiveOpener& archives;
    TemporaryPlaces& temporaryPlaces;
    Volumes::Source volumes;                                    ///< what is mounted
    std::function<std::chrono::steady_clock::time_point()> now; ///< for measuring; on any thread
    std::function<Date()> today;                                ///< the time of day; on any thread
    std::function<void(const std::string&)> log;                ///< one line, for developers
};

} // namespace fennik::app
