// Lists folders with Fennik, with bare system calls and with the tools that everyone has:
//   listing_benchmark [options of Google Benchmark] [--cold] FOLDER REPEATS …
// Each folder is listed REPEATS times per measurement. The names of the measurements are
// "number of entries/who". With --cold the caches of the system are emptied before each listing,
// which only root may do, and only Fennik and two threads of bare calls are measured.
#include "benchmarks/BareListing.h"
#include "benchmarks/Tools.h"
#include "core/listing/FolderOpener.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace fennik;

enum class Caches { warm, cold };

void emptyCaches() {
    sync();
    std::ofstream switches("/proc/sys/vm/drop_caches");
    if (!(switches << 3 << std::flush)) {
        std::cerr << "The caches of the system cannot be emptied.\n";
        std::exit(EXIT_FAILURE);
    }
}

FolderOpener::Listing listWithFennik(const std::string& folder) {
    auto listing =
        FolderOpener::open(systemFileSystem(), FileUrl(folder), FolderOpener::ShowHidden::yes);
    if (!listing) {
        std::cerr << listing.error().message() << '\n';
        std::exit(EXIT_FAILURE);
    }
    return std::move(*listing);
}

/// Registers what `list` takes, without the time that its result takes to be given back.
template <class List>
void add(const std::string& name, Caches caches, int repeats, const List& list) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [caches, list](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state) {
                                         if (caches == Caches::cold)
                                             emptyCaches();
                                         const auto started = std::chrono::steady_clock::now();
                                         [[maybe_unused]] const auto result = list();
                                         const std::chrono::duration<double> taken =
                                             std::chrono::steady_clock::now() - started;
                                         state.SetIterationTime(taken.count());
                                     }
                                 })
        ->Iterations(repeats)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

void addFolder(const std::string& folder, int repeats, Caches caches) {
    const auto totals = bench::listOnOneThread(folder);
    bench::Totals ofFennik;
    const auto items = listWithFennik(folder).items;
    ofFennik.entries = items.size();
    for (std::size_t row = 0; row < items.size(); ++row)
        ofFennik.bytes += items.view(row).size;
    if (totals != bench::listOnTwoThreads(folder) || totals != ofFennik) {
        std::cerr << "The ways of listing " << folder << " do not see the same.\n";
        std::exit(EXIT_FAILURE);
    }
    const auto prefix = std::to_string(totals.entries) + "/";
    add(prefix + "fennik", caches, repeats, [folder] { return listWithFennik(folder); });
    add(prefix + "two threads", caches, repeats,
        [folder] { return bench::listOnTwoThreads(folder); });
    if (caches == Caches::cold)
        return;
    add(prefix + "one thread", caches, repeats,
        [folder] { return bench::listOnOneThread(folder); });
    const auto tool = [&](const std::string& name, const std::vector<std::string>& words) {
        add(prefix + name, caches, 1, [words] {
            bench::runTool(words);
            return 0;
        });
    };
    tool("ls", {"ls", "-U", "-l", folder});
    tool("find", {"find", folder, "-maxdepth", "1", "-printf", "%y %m %s %T@ %f\\n"});
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    auto caches = Caches::warm;
    std::optional<std::string> folder;
    for (int i = 1; i < argumentCount; ++i) {
        const std::string word = arguments[i];
        if (word == "--cold") {
            caches = Caches::cold;
        } else if (!folder) {
            folder = word;
        } else {
            addFolder(*folder, std::stoi(word), caches);
            folder.reset();
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
