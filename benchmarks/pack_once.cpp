// Packs items through the whole queue, in a process of its own:
//   pack_once EXTENSION LEVEL ARCHIVE SOURCE…
#include "benchmarks/OneJob.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/HelperPacker.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

int main(int argumentCount, char** arguments) {
    using namespace fennik;
    if (argumentCount == 2 && arguments[1] == archiveHelperOption)
        return runArchiveHelper();
    if (argumentCount < 5)
        return 2;
    const auto format =
        std::ranges::find(allArchiveFormats, std::string_view(arguments[1]), extensionOf);
    if (format == allArchiveFormats.end())
        return 2;
    const PackOptions options{.format = *format, .level = std::atoi(arguments[2])};
    const FileUrl archive(arguments[3]);
    std::vector<FileUrl> sources;
    TransferRequest request{.kind = TransferKind::pack};
    for (int i = 4; i < argumentCount; ++i) {
        sources.emplace_back(arguments[i]);
        request.pairs.push_back({sources.back(), archive});
    }
    const auto body = [&](OperationContext& context) {
        const bool isPacked = HelperPacker().pack(sources, archive, options, context);
        return std::vector(sources.size(), isPacked ? PairOutcome::done : PairOutcome::failed);
    };
    return runOneJob(std::move(request), archive.parent().appending("trash"), body) ? 0 : 1;
}
