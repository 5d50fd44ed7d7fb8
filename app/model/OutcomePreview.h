#pragma once

#include "app/model/Dialog.h"
#include "app/model/PanelServices.h"
#include "core/base/DelayedWork.h"

#include <functional>
#include <memory>
#include <string>

namespace fennik::app {

/// What will come of a text while it is being typed. It is found on a worker, soon after the last
/// key; answers to what has been typed over are dropped. Lives on the main thread.
class OutcomePreview {
public:
    /// Runs on a worker.
    using Find = std::function<Outcome()>;
    enum class When { now, afterTyping };

    /// `changed` is called when there is another outcome.
    OutcomePreview(const PanelServices& services, std::function<void()> changed);

    const Outcome& outcome() const { return outcome_; }
    /// `path` is what `find` is going to touch.
    void ask(When when, std::string path, Find find);
    /// Takes `outcome` for the answer, and drops what was asked.
    void set(Outcome outcome);

private:
    PanelServices services_;
    std::function<void()> changed_;
    Outcome outcome_;
    DelayedWork question_;
    std::shared_ptr<int> life_ = std::make_shared<int>(); ///< of the newest question
};

} // namespace fennik::app
