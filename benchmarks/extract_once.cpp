// Takes everything out of an archive through the whole queue, and reads it in a process of its own:
//   extract_once ARCHIVE FOLDER
#include "benchmarks/OneJob.h"
#include "core/archives/ArchiveExtractor.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/HelperArchives.h"

#include <optional>
#include <string_view>
#include <utility>

int main(int argumentCount, char** arguments) {
    using namespace fennik;
    if (argumentCount == 2 && arguments[1] == archiveHelperOption)
        return runArchiveHelper();
    if (argumentCount != 3)
        return 2;
    const FileUrl archive(arguments[1]);
    const FileUrl folder(arguments[2]);
    TransferRequest request{.kind = TransferKind::extract, .pairs = {{archive, folder}}};
    const HelperArchives archives;
    const auto body = [&](OperationContext& context) {
        const auto noPassword = [](const FileUrl&, const ArchiveError&) {
            return std::optional<std::string>();
        };
        return ArchiveExtractor(archives, context, noPassword)
            .run({{.archive = archive, .target = folder}});
    };
    return runOneJob(std::move(request), folder.appending("trash"), body) ? 0 : 1;
}
