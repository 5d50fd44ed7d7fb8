#include "app/model/AppModel.h"
#include "app/model/DesktopActions.h"
#include "app/model/ItemCount.h"
#include "core/base/CzechText.h"

#include <algorithm>
#include <utility>

namespace fennik::app {

namespace {

constexpr auto hideCleanAfter = std::chrono::seconds(3);
constexpr auto hideFailedAfter = std::chrono::seconds(6);

bool haveEnded(const std::vector<JobSnapshot>& jobs) {
    return std::ranges::all_of(jobs, &JobSnapshot::hasEnded);
}

bool liesIn(const FileUrl& item, const std::string& folder) {
    const auto& path = item.path();
    const auto length = path.size() - item.lastComponent().size();
    const auto above = std::string_view(path).substr(0, length);
    return above == (folder == "/" ? folder : folder + "/");
}

std::string whatWasDone(const TransferRequest& request) {
    const auto& pairs = request.pairs;
    const auto items = pairs.size() == 1 ? quoted(pairs.front().source.lastComponent())
                                         : itemCount(std::ssize(pairs));
    switch (request.kind) {
    case TransferKind::copy:
        break;
    case TransferKind::move:
        return "Přesunuto: " + items;
    case TransferKind::pack:
        return "Zabaleno: " + quoted(pairs.front().destination.lastComponent());
    case TransferKind::extract:
        return "Rozbaleno: " + items;
    }
    return "Zkopírováno: " + items;
}

} // namespace

bool AppModel::hasUnfinishedJobs() const {
    return !haveEnded(engine_.snapshots());
}

void AppModel::setShowsOperations(bool shows) {
    // Who opens the card wants to read it.
    hideWork_.cancel();
    if (std::exchange(showsOperations_, shows) != shows)
        emit changed(AppChange::operations);
}

void AppModel::cancelJob(const Uuid& id) {
    engine_.cancel(id);
    bridge_.cancelClash(id);
    giveUpPassword(id);
    const auto* clash = stage_.shownAs<ConflictDialog>();
    if (clash != nullptr && clash->pending->job.id == id)
        closeDialog();
}

void AppModel::giveUpPassword(const Uuid& job) {
    const auto jobs = engine_.snapshots();
    const auto found = std::ranges::find(jobs, job, &JobSnapshot::id);
    // Only the one job that runs can be asking.
    if (found == jobs.end() || found->hasEnded() || found->state == JobSnapshot::State::waiting)
        return;
    passwords_.giveUp(PendingPassword::Asker::job);
    const auto* password = stage_.shownAs<PasswordDialog>();
    if (password != nullptr && password->pending->isAnswered())
        closeDialog();
}

void AppModel::stopJobs() {
    engine_.cancelAll();
    bridge_.close();
    passwords_.close();
    left_.stopReading();
    right_.stopReading();
    stopLooking();
    const bool asks =
        stage_.shownAs<ConflictDialog>() != nullptr || stage_.shownAs<PasswordDialog>() != nullptr;
    if (asks)
        closeDialog();
}

void AppModel::takeJobs(std::vector<JobSnapshot> jobs) {
    jobs_ = std::move(jobs);
    emit changed(AppChange::jobs | takeUndoTitle());
    hideQueueLater();
}

void AppModel::hideQueueLater() {
    hideWork_.cancel();
    if (jobs_.empty() || !haveEnded(jobs_) || !settings_.get(SettingKeys::autoHideQueue))
        return;
    const bool isClean =
        std::ranges::all_of(jobs_, [](const JobSnapshot& job) { return job.errors->empty(); });
    hideWork_.schedule(isClean ? hideCleanAfter : hideFailedAfter, [this, isClean] {
        setShowsOperations(false);
        // What has failed stays to be read.
        if (isClean)
            engine_.removeEnded();
    });
}

void AppModel::takeEnd(const JobSnapshot& job, const TransferRequest& request) {
    takeMarksOf(job, request);
    takeChanges();
    tellEnd(job, request);
    desktop_->tellEnd(job);
}

void AppModel::takeMarksOf(const JobSnapshot& job, const TransferRequest& request) {
    for (auto* panel : {&left_, &right_}) {
        NameSet done;
        for (std::size_t i = 0; i < request.pairs.size(); ++i) {
            const auto& source = request.pairs[i].source;
            const bool isDone =
                job.outcomes[i] == PairOutcome::done || job.outcomes[i] == PairOutcome::skipped;
            if (isDone && liesIn(source, panel->location().path()))
                done.emplace(source.lastComponent());
        }
        panel->unmark(done);
    }
}

void AppModel::tellEnd(const JobSnapshot& job, const TransferRequest& request) {
    batchErrors_ += job.errors->size();
    // The list of jobs may come later than the end of the last one.
    if (!hasUnfinishedJobs()) {
        if (const auto errors = std::exchange(batchErrors_, 0); errors > 0)
            return showToast({.text = "Hotovo, " + std::to_string(errors) + " chyb",
                              .kind = Toast::Kind::error,
                              .action = Toast::Action::operations});
    }
    if (job.state == JobSnapshot::State::failed)
        return showToast(
            {.text = job.failure, .kind = Toast::Kind::error, .action = Toast::Action::operations});
    if (job.state != JobSnapshot::State::finished || !job.errors->empty())
        return;
    if (job.skipped > 0)
        return showToast({.text = "Hotovo, přeskočeno " + std::to_string(job.skipped),
                          .kind = Toast::Kind::ok,
                          .undoable = job.doneFiles > 0});
    showToast({.text = whatWasDone(request), .kind = Toast::Kind::ok, .undoable = true});
}

} // namespace fennik::app
