#pragma once

#include "core/base/FileUrl.h"

#include <expected>
#include <functional>
#include <string>
#include <vector>

namespace fennik::app {

/// What the desktop around the window does for it: other programs, notifications, sleep. Main
/// thread only; nothing here waits, neither for a disk nor for another program.
class Workspace {
public:
    /// Called on the main thread once it is done; otherwise with a whole sentence that says why it
    /// could not be.
    using Done = std::move_only_function<void(std::expected<void, std::string>)>;

    /// Which terminal, and how it is told the folder.
    struct Terminal {
        enum class App { terminal, iterm };
        App app = App::terminal;
        FileUrl folder = {};
        std::string script = {}; ///< for the one of them that is driven by scripts
    };

    struct Notification {
        std::string title = {};
        std::string text = {}; ///< UTF-8, as the title
    };

    enum class Sleep { allowed, heldOff };

    virtual ~Workspace() = default;

    /// Opens a file with the application that the desktop has for its type. A program or a script
    /// is not run.
    virtual void open(const FileUrl& file, Done done) = 0;
    /// Opens a file with the application of that name: that of its desktop entry, or a program
    /// with its arguments; empty: the one that the desktop has for text.
    virtual void edit(const FileUrl& file, const std::string& application, Done done) = 0;
    virtual void openTerminal(const Terminal& terminal, Done done) = 0;
    /// Shows the items, all of one folder and at least one, in the desktop's own file browser.
    virtual void reveal(const std::vector<FileUrl>& items, Done done) = 0;
    /// Shows a notification in place of the last one, unless the user looks at the window anyway.
    virtual void notify(const Notification& notification) = 0;
    /// Whether the computer may go to sleep by itself. It may at first.
    virtual void setSleep(Sleep sleep) = 0;
};

} // namespace fennik::app
