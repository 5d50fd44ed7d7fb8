// Copies or moves items through the whole queue, counting, snapshots and undo steps included:
//   transfer_once copy|move FOLDER SOURCE…
#include "benchmarks/OneJob.h"

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
    return runOneJob(std::move(request), folder.appending("trash")) ? 0 : 1;
}
