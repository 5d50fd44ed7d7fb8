#include "benchmarks/OneJob.h"

#include "core/base/SerialWorker.h"
#include "core/operations/Trashes.h"

#include <chrono>
#include <iostream>
#include <latch>
#include <utility>

namespace fennik {

bool runOneJob(TransferRequest request, const FileUrl& trash, TransferEngine::Body body) {
    SerialWorker worker;
    UndoJournal journal;
    const FolderTrash provider(trash);
    std::latch ended(1);
    bool succeeded = false;
    TransferEngine engine({.worker = worker,
                           .journal = journal,
                           .trash = provider,
                           .now = [] { return std::chrono::steady_clock::now(); },
                           .today = [] { return Date{}; }});
    engine.setOnUpdate([](const std::vector<JobSnapshot>&) {});
    engine.setOnJobFinished([&](const JobSnapshot& job, const TransferRequest&) {
        for (const auto& error : *job.errors)
            std::cerr << error << '\n';
        succeeded = job.state == JobSnapshot::State::finished && job.errors->empty();
        ended.count_down();
    });
    engine.enqueue(std::move(request), {}, std::move(body));
    ended.wait();
    worker.shutDown(std::chrono::seconds(10));
    return succeeded;
}

} // namespace fennik
