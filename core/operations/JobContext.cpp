#include "core/operations/JobContext.h"

#include "core/operations/ClampedSum.h"

#include <tuple>
#include <utility>

namespace fennik {

JobContext::JobContext(Job& job, JobHost& host) : job_(job), host_(host), started_(host.now()) {}

void JobContext::startWork() {
    job_.startWork();
    started_ = host_.now();
    speed_.restart(started_, 0);
    host_.publish(Publishing::now);
}

template <class Pause>
void JobContext::standStill(Pause pause) {
    const auto before = host_.now();
    job_.update([](JobSnapshot& status) {
        status.bytesPerSecond = 0;
        status.secondsLeft.reset();
    });
    pause();
    const auto after = host_.now();
    started_ += after - before;
    speed_.restart(after, done_.moved);
    host_.publish(Publishing::now);
}

ConflictChoice JobContext::answer(const Conflict& conflict) {
    if (policy_ && !job_.isCancelled())
        return policy_->choice;
    ConflictDecision decision;
    whileAsking([&] {
        if (const auto resolver = host_.resolver())
            decision = resolver(conflict);
    });
    // Who cancels the job while it asks wants nothing more to happen, whatever the answer.
    if (job_.isCancelled())
        return ConflictChoice::cancel;
    if (decision.applyToAll)
        policy_ = decision;
    return decision.choice;
}

void JobContext::whileAsking(const std::function<void()>& ask) {
    if (!job_.startAsking())
        return;
    standStill([&] {
        host_.publish(Publishing::now);
        ask();
        job_.stopAsking();
    });
}

Checkpoint JobContext::checkpoint() {
    if (job_.isPaused())
        standStill([&] { job_.waitWhilePaused(); });
    return job_.isCancelled() ? Checkpoint::stop : Checkpoint::goOn;
}

void JobContext::cancelNow() {
    // A job at work goes on to its next checkpoint, so there is no end to tell here.
    std::ignore = job_.cancel();
    host_.publish(Publishing::now);
}

void JobContext::setTotals(std::int64_t bytes, std::int64_t files) {
    job_.update([&](JobSnapshot& status) {
        status.totalBytes = bytes;
        status.totalFiles = files;
    });
    host_.publish(Publishing::paced);
}

void JobContext::setCurrentName(std::string_view name) {
    job_.update([&](JobSnapshot& status) { status.currentName = name; });
    host_.publish(Publishing::paced);
}

void JobContext::bytesWritten(std::int64_t count) {
    addClamped(done_.moved, count);
    job_.update([&](JobSnapshot& status) { addClamped(status.doneBytes, count); });
    keepPace();
    tellProgress();
}

void JobContext::bytesAccounted(std::int64_t count) {
    addClamped(done_.accounted, count);
    job_.update([&](JobSnapshot& status) { addClamped(status.doneBytes, count); });
    tellProgress();
}

void JobContext::filesDone(std::int64_t count) {
    addClamped(done_.items, count);
    job_.update([&](JobSnapshot& status) { addClamped(status.doneFiles, count); });
    tellProgress();
}

void JobContext::itemsSkipped(std::int64_t count) {
    job_.update([&](JobSnapshot& status) { addClamped(status.skipped, count); });
    tellProgress();
}

void JobContext::addError(std::string sentence) {
    job_.addError(std::move(sentence));
    host_.publish(Publishing::paced);
}

void JobContext::fail(std::string sentence) {
    job_.fail(std::move(sentence));
    host_.publish(Publishing::paced);
}

void JobContext::keepPace() {
    using std::chrono::ceil;
    using std::chrono::milliseconds;
    while (true) {
        const auto wait = pacer_.wait(host_.throttle(), timeAtWork(), done_.moved);
        if (wait <= wait.zero())
            return;
        host_.publish(Publishing::paced);
        if (job_.waitFor(ceil<milliseconds>(wait), host_.timedWait()) == Checkpoint::stop)
            return;
    }
}

void JobContext::tellProgress() {
    const auto now = host_.now();
    speed_.record(now, done_.moved);
    estimate_.record(now - started_, done_);
    job_.update([&](JobSnapshot& status) {
        status.bytesPerSecond = speed_.bytesPerSecond();
        if (status.totalBytes > 0 || status.totalFiles > 0)
            status.secondsLeft =
                estimate_.secondsFor(status.totalBytes - status.doneBytes,
                                     status.totalFiles - status.doneFiles - status.skipped);
    });
    host_.publish(Publishing::paced);
}

} // namespace fennik
