// Adds up a tree with Fennik, with bare system calls and with the tools that are there:
//   sizing_benchmark [options of Google Benchmark] FOLDER
#include "benchmarks/BareSizing.h"
#include "benchmarks/Tools.h"
#include "core/listing/FolderSizer.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

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

template <class Work>
void add(const std::string& name, const Work& work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state)
                                         work();
                                 })
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void addTool(const std::string& name, const std::vector<std::string>& words) {
    if (std::filesystem::exists("/usr/bin/" + name))
        add(name, [words] { bench::runTool(words); });
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
    add("fennik", [folder] { sizeWithFennik(folder); });
    add("two threads", [folder] { bench::addUpTree(folder, 2); });
    add("one thread", [folder] { bench::addUpTree(folder, 1); });
    addTool("du", {"du", "-sb", folder});
    addTool("gdu", {"gdu", "--non-interactive", "--no-progress", folder});
    addTool("ncdu", {"ncdu", "-0", "-o", "/dev/null", folder});
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
