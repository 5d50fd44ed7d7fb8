#pragma once

#include "core/base/Executor.h"
#include "core/base/FileUrl.h"
#include "core/platform/FileSystem.h"

#include <chrono>
#include <functional>
#include <string>

namespace fennik::app {

/// What a panel needs of the world around it. All of it outlives the panels.
struct PanelServices {
    const FileSystem& files;
    DiskExecutor& disk;
    Executor& main;
    std::function<std::chrono::steady_clock::time_point()> now; ///< for measuring
    std::function<void(const std::string&)> log;                ///< one line, for developers
};

} // namespace fennik::app
