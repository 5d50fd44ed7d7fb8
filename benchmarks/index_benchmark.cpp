// Reads what is in archives with Fennik, in this process and in a helper's, with a bare loop over
// the library's headers, in this process and as a program of its own, and with the tools that are
// there:
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
/// Makes this program nothing but the bare loop over one archive.
constexpr std::string_view bareOption = "--bare-loop";

/// What the process that reads archives sets for itself, or every date asks the disk for the time
/// zone. Only while it stands: the tools run as their user would run them.
class KnownTimeZone {
public:
    KnownTimeZone() : wasKnown_(std::getenv("TZ") != nullptr) {
        if (!wasKnown_)
            setenv("TZ", ":/etc/localtime", 0);
        tzset();
    }
    ~KnownTimeZone() {
        if (!wasKnown_)
            unsetenv("TZ");
    }
    KnownTimeZone(const KnownTimeZone&) = delete;
    KnownTimeZone& operator=(const KnownTimeZone&) = delete;

private:
    bool wasKnown_;
};

std::int64_t filesWith(const ArchiveOpener& archives, const std::string& path) {
    const KnownTimeZone timeZone;
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
    const KnownTimeZone timeZone;
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
    if (argumentCount == 3 && arguments[1] == bareOption)
        return filesWithBareLoop(arguments[2]) > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    const auto program = std::filesystem::canonical(arguments[0]).string();
    benchmark::Initialize(&argumentCount, arguments);
    if (argumentCount < 2)
        return EXIT_FAILURE;
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
        bench::addWholeRun(name + "/bare program", [program, path] {
            bench::runTool({program, std::string(bareOption), path});
        });
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
