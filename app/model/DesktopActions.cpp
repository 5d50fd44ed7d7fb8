#include "app/model/DesktopActions.h"

#include "app/model/AppModel.h"
#include "app/model/TerminalScript.h"
#include "core/base/CzechText.h"

#include <algorithm>

namespace fennik::app {

namespace {

/// From so many seconds on, nobody is expected to have waited in front of the window.
constexpr std::int64_t longJob = 10;

/// What a notification says of the end; none: nothing that the user does not know.
std::optional<std::string> endOf(const JobSnapshot& job) {
    if (job.state == JobSnapshot::State::failed)
        return "Chyba: " + job.failure;
    if (job.state != JobSnapshot::State::finished)
        return std::nullopt;
    if (const auto errors = job.errors->size(); errors > 0)
        return "Hotovo, " + std::to_string(errors) + " chyb";
    if (job.skipped > 0)
        return "Hotovo, přeskočeno " + std::to_string(job.skipped);
    return "Hotovo";
}

/// A job that waits for its turn does so behind one that works, or that waits for the user.
bool isAtWork(const JobSnapshot& job) {
    return job.state == JobSnapshot::State::preparing || job.state == JobSnapshot::State::running;
}

} // namespace

DesktopActions::DesktopActions(AppModel& app, Workspace& workspace, std::function<Date()> now)
    : app_(app), workspace_(workspace), now_(std::move(now)) {
    QObject::connect(&app_, &AppModel::changed, &listener_, [this](AppChanges changes) {
        if (changes.testFlag(AppChange::jobs))
            takeJobs();
        if (changes.testFlag(AppChange::dialog))
            takeDialog();
    });
}

Workspace::Done DesktopActions::failureInToast() {
    return [this, life = std::weak_ptr(life_)](const std::expected<void, std::string>& result) {
        if (!result && !life.expired())
            app_.showToast(result.error(), Toast::Kind::error);
    };
}

void DesktopActions::open(const FileUrl& file) {
    workspace_.open(file, failureInToast());
}

void DesktopActions::edit() {
    auto& active = app_.activePanel();
    const auto item = active.error() ? std::nullopt : active.cursorItem();
    if (!item)
        return app_.showToast("Není co upravit.");
    if (item->isParentLink || item->isFolderLike())
        return app_.showToast("Složku nejde upravit – Enter ji otevře.");
    workspace_.edit(active.location().appending(item->name),
                    app_.settings().get(SettingKeys::editorApp), failureInToast());
}

void DesktopActions::reveal(std::vector<FileUrl> items) {
    if (items.empty())
        return app_.showToast("Není co ukázat.");
    if (const auto& archive = app_.activePanel().archive())
        items = {archive->outermost().place};
    workspace_.reveal(items, failureInToast());
}

void DesktopActions::openTerminal() {
    const auto folder = app_.activePanel().folder();
    const bool isIterm = app_.settings().get(SettingKeys::terminalApp) == "iterm";
    workspace_.openTerminal(
        {.app = isIterm ? Workspace::Terminal::App::iterm : Workspace::Terminal::App::terminal,
         .folder = folder,
         .script = TerminalScript::opening(folder)},
        failureInToast());
}

void DesktopActions::openPaths(std::optional<std::string> left, std::optional<std::string> right) {
    waitingPaths_.emplace_back(std::move(left), std::move(right));
    takeDialog();
}

void DesktopActions::takeDialog() {
    if (!app_.dialog()) {
        toldQuestion_.reset();
        for (const auto& [left, right] : std::exchange(waitingPaths_, {})) {
            if (right)
                app_.panel(PanelSide::right).openTab(*right);
            if (left)
                app_.panel(PanelSide::left).openTab(*left);
            if (left || right)
                app_.activate(left ? PanelSide::left : PanelSide::right);
        }
        return;
    }
    const auto tell = [this](const std::shared_ptr<const void>& question, std::string title,
                             std::string text) {
        if (toldQuestion_.lock() == question)
            return;
        toldQuestion_ = question;
        workspace_.notify({.title = std::move(title), .text = std::move(text)});
    };
    if (const auto* clash = std::get_if<ConflictDialog>(&*app_.dialog())) {
        const auto& pending = clash->pending;
        tell(pending, pending->job.title,
             quoted(pending->conflict.destination.lastComponent()) +
                 " už v cíli je. Čeká na vaše rozhodnutí.");
    } else if (const auto* password = std::get_if<PasswordDialog>(&*app_.dialog())) {
        const auto& pending = password->pending;
        if (pending->asker == PendingPassword::Asker::job)
            tell(pending, "Archiv je chráněný heslem.",
                 quoted(pending->archive.lastComponent()) + " čeká na heslo.");
    }
}

void DesktopActions::tellEnd(const JobSnapshot& job) {
    if (!job.startedAt || now_().seconds - job.startedAt->seconds < longJob)
        return;
    if (auto text = endOf(job))
        workspace_.notify({.title = job.title, .text = std::move(*text)});
}

void DesktopActions::takeJobs() {
    const auto wanted = std::ranges::any_of(app_.jobs(), isAtWork) ? Workspace::Sleep::heldOff
                                                                   : Workspace::Sleep::allowed;
    if (std::exchange(sleep_, wanted) != wanted)
        workspace_.setSleep(wanted);
}

} // namespace fennik::app
