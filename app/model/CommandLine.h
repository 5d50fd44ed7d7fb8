#pragma once

#include "app/model/CommandOutput.h"
#include "app/model/PanelServices.h"
#include "app/model/Settings.h"
#include "app/model/ports/Clipboard.h"
#include "core/base/FileUrl.h"
#include "core/base/Uuid.h"
#include "core/listing/FolderOpener.h"

#include <QFlags>
#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace fennik::app {

class CommandRunner;
class PanelModel;

/// What an operation on the command line touched.
enum class CommandChange {
    text = 1,    ///< not by the view itself
    run = 2,     ///< another command is the last one, or none; or it has ended
    output = 4,  ///< the last command has written
    focus = 8,   ///< the command line is to take the keyboard
    failure = 16 ///< the panel could not go where it was sent
};
Q_DECLARE_FLAGS(CommandChanges, CommandChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(CommandChanges)

/// A command that was run.
struct CommandRun {
    enum class State { running, ended, notStarted };

    Uuid id = {};               ///< of this run alone
    std::string command = {};   ///< as it was entered
    std::string directory = {}; ///< the path that it ran in, in bytes
    CommandOutput output = {};  ///< of both of its streams, as it came
    State state = State::running;
    std::optional<std::int32_t> exitCode = {}; ///< once it has ended; 128 and a signal's number
};

/// The command line below the panels: what is typed into it runs in the active panel's folder, one
/// command at a time; "cd" leads the panel elsewhere. Lives on the main thread.
class CommandLine final : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t mostHistory = 100;

    /// `settings` and `clipboard` outlive the command line, and so do the panels.
    CommandLine(PanelServices services, Settings& settings, Clipboard& clipboard, FileUrl home,
                std::function<PanelModel&()> activePanel);
    /// Ends the command at once.
    ~CommandLine() override;

    /// In UTF-8.
    const std::string& text() const { return text_; }
    /// What the user has typed.
    void setText(std::string text);
    /// The commands of before, oldest first, at most `mostHistory`.
    const std::vector<std::string>& history() const { return history_; }
    /// The last command, until its output is closed.
    const std::optional<CommandRun>& lastRun() const { return run_; }
    /// Why the panel could not go where it was sent last; none while it may still get there.
    const std::optional<FolderOpener::Failure>& failure() const { return failure_; }

    /// Grows with every request to take the keyboard.
    int focusRequest() const { return focusRequest_; }
    void requestFocus();

    /// Runs the text, and ends what the last command has left. The text goes, unless it sends the
    /// panel where it cannot go.
    void run();
    /// Asks the command to end, and ends it if it does not.
    void stop();
    /// Puts the whole output into the clipboard.
    void copyOutput();
    /// The command itself goes on. False when there was no output.
    bool closeOutput();
    /// Ends everything that was run, and waits for it; false when something has not ended.
    bool shutDown();

signals:
    /// Emitted once at the end of an operation, with all that it touched.
    void changed(fennik::app::CommandChanges changes);

private:
    void remember(const std::string& command);
    void go(const std::string& command);
    void followLoad(PanelModel& panel, const std::string& command);
    void fail(FolderOpener::Failure failure);
    void start(const std::string& command);
    void endRunner();

    PanelServices services_;
    Settings& settings_;
    Clipboard& clipboard_;
    FileUrl home_;
    std::function<PanelModel&()> activePanel_;
    std::string text_;
    std::vector<std::string> history_;
    std::optional<CommandRun> run_;
    std::optional<FolderOpener::Failure> failure_;
    int focusRequest_ = 0;
    std::unique_ptr<CommandRunner> runner_;              ///< of the last command
    std::vector<std::unique_ptr<CommandRunner>> ending_; ///< of those before
    std::shared_ptr<QObject> going_; ///< gone when the panel has arrived, or is sent elsewhere
};

} // namespace fennik::app
