// Reads what is in archives with Fennik, in this process and in a helper's, with a bare loop over
// the library's headers and with the tools that are there:
//   index_benchmark [options of Google Benchmark] ARCHIVE…
#include "benchmarks/WholeRun.h"
#include "core/archives/ArchiveIndex.h"
#include "core/archives/ArchiveLocale.h"
#include "core/archives/ArchiveReader.h"
#include "core/archives/helper/ArchiveHelper.h"
#include "core/archives/helper/HelperArchives.h"

#include <archive.h>
#include <archive_entry.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using namespace fennik;

constexpr std::size_t bareBlock = 64U << 10U;

std::int64_t filesWith(const ArchiveOpener& archives, const std::string& path) {
    const FileUrl url(path);
    const ArchiveRequest request{.url = url, .wanted = std::vector<std::string>()};
    const auto stream = archives.open(request, [] { return false; });
    const auto index = stream ? ArchiveIndex::read(**stream, url) : std::unexpected(stream.error());
    if (!index) {
        std::cerr << path << ": " << index.error().message() << '\n';
        std::exit(EXIT_FAILURE);
    }
    return (*index)->fileCount();
}

std::int64_t filesWithBareLoop(const std::string& path) {
    const ArchiveLocale locale;
    auto* reader = archive_read_new();
    archive_read_support_filter_all(reader);
    archive_read_support_format_all(reader);
    archive_read_open_filename(reader, path.c_str(), bareBlock);
    std::int64_t files = 0;
    archive_entry* entry = nullptr;
    while (archive_read_next_header(reader, &entry) == ARCHIVE_OK)
        files += archive_entry_filetype(entry) == AE_IFREG ? 1 : 0;
    archive_read_free(reader);
    return files;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount == 2 && arguments[1] == archiveHelperOption)
        return runArchiveHelper();
    benchmark::Initialize(&argumentCount, arguments);
    if (argumentCount < 2)
        return EXIT_FAILURE;
    // As the process that reads archives has it: else every date asks the disk for the time zone.
    setenv("TZ", ":/etc/localtime", 0); // NOLINT(concurrency-mt-unsafe): there is one thread yet
    tzset();
    const DirectArchives direct;
    const HelperArchives helped;
    for (int i = 1; i < argumentCount; ++i) {
        const std::string path = arguments[i];
        const auto files = filesWithBareLoop(path);
        if (filesWith(direct, path) != files || filesWith(helped, path) != files) {
            std::cerr << "The ways of reading " << path << " do not see the same.\n";
            return EXIT_FAILURE;
        }
        const auto name = std::filesystem::path(path).filename().string();
        bench::addWholeRun(name + "/fennik", [&direct, path] { filesWith(direct, path); });
        bench::addWholeRun(name + "/helped", [&helped, path] { filesWith(helped, path); });
        bench::addWholeRun(name + "/bare", [path] { filesWithBareLoop(path); });
        if (name.ends_with(".zip"))
            bench::addTool(name + "/unzip", {"unzip", "-l", path});
        else if (name.ends_with(".7z"))
            bench::addTool(name + "/7z", {"7z", "l", path});
        else
            bench::addTool(name + "/tar", {"tar", "-tvf", path});
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
