#include "core/operations/Job.h"

#include <memory>

namespace fennik {

using State = JobSnapshot::State;

Job::Job(TransferRequest request) : kind_(request.kind), request_(std::move(request)) {
    status_.id = id_;
    status_.kind = kind_;
    status_.title = request_.jobTitle();
    status_.destination = request_.destinationFolder();
}

JobSnapshot Job::snapshot() {
    const std::lock_guard lock(lock_);
    publishErrors();
    auto snapshot = status_;
    if (status_.paused && (status_.state == State::preparing || status_.state == State::running))
        snapshot.state = State::paused;
    if (snapshot.state != State::running) {
        snapshot.bytesPerSecond = 0;
        snapshot.secondsLeft.reset();
    }
    return snapshot;
}

// Snapshots share the errors, so that new ones mean a new copy of all. As the list has to grow by a
// part of itself before the next copy, all copies together grow with the list, not with its square.
void Job::publishErrors() {
    const auto published = status_.errors->size();
    if (!status_.hasEnded() && errors_.size() - published > published / 16)
        status_.errors = std::make_shared<const std::vector<std::string>>(errors_);
}

bool Job::hasEnded() const {
    const std::lock_guard lock(lock_);
    return status_.hasEnded();
}

bool Job::isCancelled() const {
    const std::lock_guard lock(lock_);
    return cancelled_;
}

bool Job::isPaused() const {
    const std::lock_guard lock(lock_);
    return status_.paused;
}

void Job::pause() {
    const std::lock_guard lock(lock_);
    if (cancelled_ || status_.hasEnded())
        return;
    status_.paused = true;
    woken_.notify_all();
}

void Job::resume() {
    const std::lock_guard lock(lock_);
    status_.paused = false;
    woken_.notify_all();
}

bool Job::cancel() {
    const std::lock_guard lock(lock_);
    if (status_.hasEnded())
        return false;
    cancelled_ = true;
    status_.paused = false;
    woken_.notify_all();
    if (status_.state != State::waiting)
        return false;
    status_.state = State::cancelled;
    return true;
}

bool Job::begin(Date today) {
    const std::lock_guard lock(lock_);
    if (cancelled_)
        return false;
    status_.state = State::preparing;
    status_.startedAt = today;
    return true;
}

void Job::startWork() {
    const std::lock_guard lock(lock_);
    status_.state = State::running;
}

bool Job::startAsking() {
    const std::lock_guard lock(lock_);
    if (cancelled_)
        return false;
    status_.state = State::askingConflict;
    return true;
}

void Job::stopAsking() {
    startWork();
}

void Job::waitWhilePaused() {
    std::unique_lock lock(lock_);
    woken_.wait(lock, [this] { return !status_.paused; });
}

Checkpoint Job::waitFor(std::chrono::milliseconds duration, const TimedWait& wait) {
    std::unique_lock lock(lock_);
    const auto isInterrupted = [this] { return cancelled_ || status_.paused; };
    if (!isInterrupted())
        wait(woken_, lock, duration);
    return isInterrupted() ? Checkpoint::stop : Checkpoint::goOn;
}

void Job::addError(std::string sentence) {
    const std::lock_guard lock(lock_);
    errors_.push_back(std::move(sentence));
}

void Job::fail(std::string sentence) {
    const std::lock_guard lock(lock_);
    if (!failure_)
        failure_ = sentence;
    errors_.push_back(std::move(sentence));
}

void Job::end(std::vector<PairOutcome> outcomes) {
    const std::lock_guard lock(lock_);
    if (!failure_ && !errors_.empty() && status_.doneFiles == 0)
        failure_ = errors_.front();
    if (cancelled_) {
        status_.state = State::cancelled;
    } else if (failure_) {
        status_.state = State::failed;
        status_.failure = std::move(*failure_);
    } else {
        status_.state = State::finished;
    }
    status_.paused = false;
    status_.currentName.clear();
    status_.errors = std::make_shared<const std::vector<std::string>>(std::move(errors_));
    outcomes_ = std::move(outcomes);
}

Job::Ending Job::takeEnding() {
    Ending ending{snapshot(), std::move(request_)};
    const std::lock_guard lock(lock_);
    ending.snapshot.outcomes = std::move(outcomes_);
    ending.snapshot.outcomes.resize(ending.request.pairs.size(), PairOutcome::pending);
    return ending;
}

} // namespace fennik
