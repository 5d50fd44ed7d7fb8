#pragma once

#include "core/operations/Conflict.h"
#include "core/operations/Job.h"
#include "core/operations/OperationContext.h"
#include "core/operations/Pacer.h"
#include "core/operations/SpeedMeter.h"
#include "core/operations/TimeEstimate.h"
#include "core/operations/TimedWait.h"
#include "core/operations/TrashProvider.h"
#include "core/operations/UndoJournal.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fennik {

/// When the world is told of a change: not more often than it can look, or at once.
enum class Publishing { paced, now };

/// What a job at work needs of its queue. Called with no lock held.
class JobHost {
public:
    virtual ~JobHost() = default;

    virtual void publish(Publishing when) = 0;
    virtual ConflictResolver resolver() const = 0;
    /// Bytes a second, 1 or more; none: no limit.
    virtual std::optional<std::int64_t> throttle() const = 0;
    virtual std::chrono::steady_clock::time_point now() const = 0;
    virtual const TimedWait& timedWait() const = 0;
    virtual const TrashProvider& trash() const = 0;
};

/// What a job's work reports goes through this to the job. Used on the worker.
class JobContext final : public OperationContext {
public:
    /// Both outlive this object.
    JobContext(Job& job, JobHost& host);

    TransferKind kind() const override { return job_.kind(); }
    ConflictChoice answer(const Conflict& conflict) override;
    void whileAsking(const std::function<void()>& ask) override;
    Checkpoint checkpoint() override;
    bool isCancelled() const override { return job_.isCancelled(); }
    void cancelNow() override;

    void setTotals(std::int64_t bytes, std::int64_t files) override;
    void setCurrentName(std::string_view name) override;
    void bytesWritten(std::int64_t count) override;
    void bytesAccounted(std::int64_t count) override;
    void filesDone(std::int64_t count) override;
    void itemsSkipped(std::int64_t count) override;
    void addError(std::string sentence) override;
    void fail(std::string sentence) override;
    void addStep(UndoStep step) override { steps_.push_back(step); }
    void dropLastStep() override { steps_.pop_back(); }
    bool isCapped() const override { return host_.throttle().has_value(); }
    const TrashProvider& trash() const override { return host_.trash(); }

    /// The counting is over.
    void startWork();
    UndoStepList takeSteps() { return std::exchange(steps_, {}); }

private:
    std::chrono::nanoseconds timeAtWork() const { return host_.now() - started_; }
    /// Runs `pause`, whose time does not count as time at work.
    template <class Pause>
    void standStill(Pause pause);
    /// Waits until data that was moved is no more than the limit allows.
    void keepPace();
    void tellProgress();

    Job& job_;
    JobHost& host_;
    std::optional<ConflictDecision> policy_; ///< the answer for all later clashes
    UndoStepList steps_;
    /// When the work began, later by all the time that it stood still.
    std::chrono::steady_clock::time_point started_;
    TimeEstimate::Done done_;
    SpeedMeter speed_;
    TimeEstimate estimate_;
    Pacer pacer_;
};

} // namespace fennik
