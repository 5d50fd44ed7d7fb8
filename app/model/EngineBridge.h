#pragma once

#include "app/model/PendingConflict.h"
#include "core/base/Executor.h"
#include "core/operations/JobSnapshot.h"
#include "core/operations/TransferEngine.h"
#include "core/operations/TransferRequest.h"

#include <functional>
#include <memory>
#include <vector>

namespace fennik::app {

/// Brings to the main thread what the engine tells on its worker, and lets the worker wait there
/// for the user. Lives on the main thread.
class EngineBridge {
public:
    /// Called on the main thread.
    struct Listeners {
        /// All jobs as they are now. Lists that were overtaken are left out.
        std::function<void(std::vector<JobSnapshot>)> jobsChanged;
        std::function<void(const JobSnapshot&, const TransferRequest&)> jobFinished;
        /// The worker waits until it is decided.
        std::function<void(std::shared_ptr<PendingConflict>)> clashed;
    };

    /// Both outlive the bridge.
    EngineBridge(TransferEngine& engine, Executor& main, Listeners listeners);
    /// As `close`.
    ~EngineBridge();
    EngineBridge(const EngineBridge&) = delete;
    EngineBridge& operator=(const EngineBridge&) = delete;

    /// Answers a clash of that job with a cancellation.
    void cancelClash(const Uuid& job);
    /// Answers every clash with a cancellation from now on, the one that waits too.
    void close();

private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
};

} // namespace fennik::app
