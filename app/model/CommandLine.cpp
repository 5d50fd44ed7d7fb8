#include "app/model/CommandLine.h"

#include "app/model/CommandRunner.h"
#include "app/model/PanelModel.h"
#include "app/model/ShellQuoting.h"
#include "app/model/ShellWord.h"
#include "core/base/CzechText.h"
#include "core/base/WhiteSpace.h"
#include "core/listing/PathCompleter.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace fennik::app {

namespace {

constexpr const char* shell = "/bin/zsh";
constexpr auto endingPatience = std::chrono::seconds(2);

std::vector<std::string> storedHistory(const Settings& settings) {
    auto history = settings.get(SettingKeys::commandHistory);
    if (history.size() > CommandLine::mostHistory)
        history.erase(history.begin(), history.end() - std::ptrdiff_t(CommandLine::mostHistory));
    return history;
}

/// Why the command does not run, in a sentence.
std::string sentence(const CommandProcess::Failure& failure, const FileUrl& folder) {
    const bool isFolder = failure.what == CommandProcess::Failure::What::folder;
    const auto name = quoted(folder.lastComponent());
    switch (failure.error.code) {
    case ENOENT:
    case ENOTDIR:
        return isFolder ? "Příkaz nejde spustit: složka " + name + " už neexistuje."
                        : "Příkaz nejde spustit: v systému chybí shell " + std::string(shell) + ".";
    case EACCES:
        return isFolder ? "Příkaz nejde spustit: do složky " + name + " nemáte přístup."
                        : "Příkaz nejde spustit: shell " + std::string(shell) +
                              " nemáte právo spouštět.";
    case E2BIG:
        return "Příkaz nejde spustit: je příliš dlouhý.";
    default:
        return "Příkaz nejde spustit: " + failure.error.reason();
    }
}

/// The folders that the text behind "cd" may mean, the likeliest last: a name with white space
/// around it, the text as paths are typed elsewhere, a word as for a shell.
std::vector<FileUrl> meant(std::string_view text, const FileUrl& base, const FileUrl& home) {
    const auto word = trimmed(text);
    if (word.empty())
        return {home};
    std::vector<std::string> paths;
    const auto below = [&base](std::string_view path) {
        return (path.starts_with('/') ? "" : base.path() + '/') + std::string(path);
    };
    if (word != text)
        paths.push_back(below(text));
    paths.push_back(PathCompleter::normalise(text, base, home));
    if (const auto plain = shellWord(word); plain && *plain != word && !plain->empty()) {
        const bool isBelowHome = word.starts_with("~/");
        paths.push_back(isBelowHome ? home.path() + plain->substr(1) : below(*plain));
    }
    std::vector<FileUrl> folders;
    for (auto& path : paths)
        folders.push_back(FileUrl(std::move(path)).standardized());
    return folders;
}

} // namespace

CommandLine::CommandLine(PanelServices services, Settings& settings, Clipboard& clipboard,
                         FileUrl home, std::function<PanelModel&()> activePanel)
    : services_(std::move(services)),
      settings_(settings),
      clipboard_(clipboard),
      home_(std::move(home)),
      activePanel_(std::move(activePanel)),
      history_(storedHistory(settings)) {}

CommandLine::~CommandLine() = default;

void CommandLine::setText(std::string text) {
    std::erase(text, '\0'); // no command can hold one
    text_ = std::move(text);
}

void CommandLine::requestFocus() {
    ++focusRequest_;
    emit changed(CommandChange::focus);
}

void CommandLine::run() {
    const auto command = text_;
    if (trimmed(command).empty())
        return;
    remember(command);
    if (command == "cd" || command.starts_with("cd "))
        go(command);
    else
        start(command);
}

void CommandLine::remember(const std::string& command) {
    if (!history_.empty() && history_.back() == command)
        return;
    history_.push_back(command);
    if (history_.size() > mostHistory)
        history_.erase(history_.begin());
    settings_.set(SettingKeys::commandHistory, history_);
}

void CommandLine::go(const std::string& command) {
    constexpr std::size_t verb = 3; // with a blank
    auto& panel = activePanel_();
    failure_.reset();
    going_ = std::make_shared<QObject>();
    using Found = std::expected<FileUrl, FolderOpener::Failure>;
    auto folders = meant(std::string_view(command).substr(std::min(verb, command.size())),
                         panel.folder(), home_);
    auto path = folders.back().path();
    auto find = [&files = services_.files, folders = std::move(folders)]() -> Found {
        Found found = std::unexpected(FolderOpener::Failure());
        for (const auto& folder : folders) {
            const auto status = files.status(folder.path(), FollowLinks::yes);
            if (status && status->type == FileType::directory)
                return folder;
            found = std::unexpected(
                FolderOpener::Failure::of(status ? PosixError{ENOTDIR} : status.error(), folder));
        }
        return found;
    };
    runThen(services_.disk, services_.main, std::move(path), going_, std::move(find),
            [this, &panel, command](Found found) {
                if (!found)
                    return fail(std::move(found.error()));
                panel.tryNavigate(*found);
                followLoad(panel, command);
            });
}

void CommandLine::followLoad(PanelModel& panel, const std::string& command) {
    const int load = panel.loadToken();
    connect(&panel, &PanelModel::changed, going_.get(), [this, &panel, load, command] {
        const bool isOther = panel.loadToken() != load; // the user has sent the panel elsewhere
        if (panel.loading() && !isOther)
            return;
        if (!isOther && panel.typedFailure())
            return fail(*panel.typedFailure());
        going_.reset();
        if (isOther || text_ != command)
            return;
        text_.clear();
        emit changed(CommandChange::text);
    });
}

void CommandLine::fail(FolderOpener::Failure failure) {
    going_.reset();
    failure_ = std::move(failure);
    emit changed(CommandChange::failure);
}

void CommandLine::start(const std::string& command) {
    endRunner();
    const auto folder = activePanel_().folder();
    run_ = CommandRun{.id = Uuid::random(), .command = command, .directory = folder.path()};
    text_.clear();
    const auto finish = [this](CommandRun::State state, std::optional<std::int32_t> code) {
        run_->state = state;
        run_->exitCode = code;
        emit changed(CommandChange::run);
    };
    runner_ = std::make_unique<CommandRunner>(
        CommandProcess::Start{
            .program = shell,
            .arguments = {"-lc", "cd " + shellQuoted(folder.path()) + " && " + command},
            .folder = folder.path()},
        services_.main,
        CommandRunner::Listeners{
            .wrote =
                [this](CommandOutput newer) {
                    run_->output.append(std::move(newer));
                    emit changed(CommandChange::output);
                },
            .ended = [finish](int code) { finish(CommandRun::State::ended, code); },
            .failed =
                [this, finish, folder](const CommandProcess::Failure& failure) {
                    run_->output.endLine(sentence(failure, folder));
                    finish(CommandRun::State::notStarted, {});
                }});
    emit changed(CommandChange::run | CommandChange::text);
}

void CommandLine::endRunner() {
    std::erase_if(ending_, [](const auto& runner) { return runner->isOver(); });
    if (!runner_)
        return;
    runner_->mute();
    runner_->end();
    ending_.push_back(std::move(runner_));
}

void CommandLine::stop() {
    if (runner_)
        runner_->end();
}

void CommandLine::copyOutput() {
    if (run_)
        clipboard_.setText(run_->output.text());
}

bool CommandLine::closeOutput() {
    if (!run_)
        return false;
    run_.reset();
    if (runner_)
        runner_->mute();
    emit changed(CommandChange::run);
    return true;
}

bool CommandLine::shutDown() {
    endRunner();
    const auto deadline = std::chrono::steady_clock::now() + endingPatience;
    return std::ranges::all_of(
        ending_, [deadline](const auto& runner) { return runner->endBefore(deadline); });
}

} // namespace fennik::app
