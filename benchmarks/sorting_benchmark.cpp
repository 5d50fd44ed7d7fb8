// Sorts the entries of a folder with Fennik and in two plain ways:
//   sorting_benchmark [options of Google Benchmark] FOLDER
#include "benchmarks/BareSort.h"
#include "core/listing/FileSorter.h"
#include "core/listing/FolderOpener.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

using namespace fennik;

[[noreturn]] void giveUp(const std::string& reason) {
    std::cerr << reason << '\n';
    std::exit(EXIT_FAILURE);
}

bool isInOrder(const FileItems& sorted, const FileItems& items, const bench::Order& order) {
    if (sorted.size() != order.size())
        return false;
    for (std::size_t row = 0; row < order.size(); ++row) {
        if (sorted.view(row).name != items.view(order[row]).name)
            return false;
    }
    return true;
}

template <class Sort>
void add(const char* name, Sort sort) {
    benchmark::RegisterBenchmark(name, [sort](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
            benchmark::DoNotOptimize(sort());
    })->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    if (argumentCount != 2)
        giveUp("One folder is wanted.");
    const auto listing = FolderOpener::open(systemFileSystem(), FileUrl(arguments[1]),
                                            FolderOpener::ShowHidden::yes);
    if (!listing)
        giveUp(listing.error().message());
    const auto& items = listing->items;
    const auto byName = FileSorter::sort(items, {SortKey::name, true}, {});
    if (!isInOrder(byName, items, bench::sortInArena(items)) ||
        !isInOrder(byName, items, bench::sortPlainly(items)))
        giveUp("The ways of sorting do not give the same order.");

    add("by name", [&] { return FileSorter::sort(items, {SortKey::name, true}, {}); });
    add("arena", [&] { return bench::sortInArena(items); });
    add("plain", [&] { return bench::sortPlainly(items); });
    // Panels sort what was read from the disk anew, not what they have shown.
    add("by size", [&] { return FileSorter::sort(items, {SortKey::size, false}, {}); });
    add("by date", [&] { return FileSorter::sort(items, {SortKey::modified, false}, {}); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
