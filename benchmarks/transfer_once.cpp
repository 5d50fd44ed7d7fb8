// Copies or moves items through the whole queue, counting, snapshots and undo steps included:
//   transfer_once copy|move FOLDER SOURCE…
#include "core/base/SerialWorker.h"
#include "core/operations/TransferEngine.h"
#include "core/operations/Trashes.h"

#include <chrono>
#include <iostream>
#include <latch>
#include <string_view>
#include <utility>

int main(int argumentCount, char** arguments) {
    using namespace fennik;
    if (argumentCount < 4)
        return 2;
    const bool isMove = std::string_view(arguments[1]) == "move";
    const FileUrl folder(arguments[2]);
    TransferRequest request{.kind = isMove ? TransferKind::move : TransferKind::copy};
    for (int i = 3; i < argumentCount; ++i) {
        const FileUrl source(arguments[i]);
        request.pairs.push_back({source, folder.appending(source.lastComponent())});
    }
    SerialWorker worker;
    UndoJournal journal;
    const FolderTrash trash(folder.appending("trash"));
    std::latch ended(1);
    bool succeeded = false;
    {
        TransferEngine engine({.worker = worker,
                               .journal = journal,
                               .trash = trash,
                               .now = [] { return std::chrono::steady_clock::now(); },
                               .today = [] { return Date{}; }});
        engine.setOnUpdate([](const std::vector<JobSnapshot>&) {});
        engine.setOnJobFinished([&](const JobSnapshot& job, const TransferRequest&) {
            for (const auto& error : *job.errors)
                std::cerr << error << '\n';
            succeeded = job.state == JobSnapshot::State::finished && job.errors->empty();
            ended.count_down();
        });
        engine.enqueue(std::move(request));
        ended.wait();
        worker.shutDown(std::chrono::seconds(10));
    }
    return succeeded ? 0 : 1;
}
