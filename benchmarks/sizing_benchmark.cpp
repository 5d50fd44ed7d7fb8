// Adds up a tree with Fennik, with bare system calls and with the tools that are there:
//   sizing_benchmark [options of Google Benchmark] FOLDER
#include "benchmarks/BareSizing.h"
#include "benchmarks/WholeRun.h"
#include "core/listing/FolderSizer.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

using namespace fennik;

FolderSizer::Result sizeWithFennik(const std::string& folder) {
    const auto result =
        FolderSizer::size(systemFileSystem(), FileUrl(folder), [] { return false; });
    if (!result) {
        std::cerr << folder << " cannot be read.\n";
        std::exit(EXIT_FAILURE);
    }
    return *result;
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (argumentCount != 2)
        return EXIT_FAILURE;
    const std::string folder = arguments[1];
    const auto ofFennik = sizeWithFennik(folder);
    for (const int threads : {1, 2}) {
        const auto bare = bench::addUpTree(folder, threads);
        if (ofFennik != FolderSizer::Result{bare.bytes, bare.files, bare.folders}) {
            std::cerr << "The ways of adding up " << folder << " do not see the same.\n";
            return EXIT_FAILURE;
        }
    }
    bench::addWholeRun("fennik", [folder] { sizeWithFennik(folder); });
    bench::addWholeRun("two threads", [folder] { bench::addUpTree(folder, 2); });
    bench::addWholeRun("one thread", [folder] { bench::addUpTree(folder, 1); });
    bench::addTool("du", {"du", "-sb", folder});
    bench::addTool("gdu", {"gdu", "--non-interactive", "--no-progress", folder});
    bench::addTool("ncdu", {"ncdu", "-0", "-o", "/dev/null", folder});
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
