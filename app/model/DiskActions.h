#pragma once

#include "core/base/DelayedWork.h"
#include "core/base/Executor.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace fennik::app {

/// Small changes of the disk, made in order on a worker of their own, and what is to be said while
/// they take their time. Lives on the main thread.
class DiskActions {
public:
    /// `changed` is called when there is something else to be said.
    DiskActions(Executor& worker, Executor& main, DelayedExecutor& delayed,
                std::function<void()> changed)
        : worker_(worker), main_(main), patience_(delayed), changed_(std::move(changed)) {}

    /// Runs `work` on the worker and hands its value to `done`. `text` says what it does, as in
    /// "Přejmenovávám „x“…".
    template <class Work, class Done>
    void run(std::string text, Work work, Done done) {
        begin(std::move(text));
        runThen(worker_, main_, life_, std::move(work),
                [this, done = std::move(done)](auto result) mutable {
                    end();
                    done(std::move(result));
                });
    }

    /// What has been going on for a while; else empty.
    const std::string& busyText() const { return busyText_; }

private:
    void begin(std::string text);
    void end();
    void await();

    Executor& worker_;
    Executor& main_;
    DelayedWork patience_;
    std::function<void()> changed_;
    std::deque<std::string> running_; ///< what each action does, the one at work first
    std::string busyText_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< gone with this object
};

} // namespace fennik::app
