#pragma once

#include "app/model/Look.h"

#include <expected>
#include <optional>
#include <span>
#include <string>

namespace fennik::app {

/// What the command line asks for.
struct Options {
    enum class Task { window, screenshot, tour, help, version };

    Task task = Task::window;
    std::string screenshotFile = {}; ///< as given
    std::string tourFolder = {};     ///< as given
    std::optional<std::string> left = {};
    std::optional<std::string> right = {}; ///< paths as given, in bytes
    Look look = Look::system;
    int width = 1440; ///< of the window, in device-independent pixels
    int height = 900;
    std::optional<double> textScale = {}; ///< none: that of the desktop
    /// Besides what the desktop asks for.
    bool highContrast = false;
    bool reducedMotion = false;
    bool verbose = false;
};

/// Reads the arguments behind the program's name. A sentence for the user where they make no sense.
std::expected<Options, std::string> readOptions(std::span<const char* const> arguments);

/// The text of `--help`.
std::string helpText();

/// `path` as an absolute path, seen from `workingFolder`.
std::string absolutePath(const std::string& path, const std::string& workingFolder);

/// A path that was given, seen from where this process works.
std::optional<std::string> absolutePath(const std::optional<std::string>& given);

} // namespace fennik::app
