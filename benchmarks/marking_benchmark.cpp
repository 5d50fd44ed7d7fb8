// Marks the entries of a folder in the ways that reach all of them, and matches their names against
// a mask, beside what cannot be avoided:
//   marking_benchmark [options of Google Benchmark] FOLDER
#include "core/listing/FolderOpener.h"
#include "core/listing/MarkState.h"
#include "core/listing/MarkTotals.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <fnmatch.h>
#include <iostream>
#include <string>
#include <unicode/unistr.h>
#include <unordered_set>
#include <vector>

namespace {

using namespace fennik;

constexpr const char* mask = "*.jpg";

[[noreturn]] void giveUp(const std::string& reason) {
    std::cerr << reason << '\n';
    std::exit(EXIT_FAILURE);
}

std::vector<std::string> namesOf(const FileItems& items) {
    std::vector<std::string> names;
    for (std::size_t row = 0; row < items.size(); ++row)
        names.emplace_back(items.view(row).name);
    return names;
}

/// The items with names in lower case.
FileItems lowered(const FileItems& items) {
    FileItems::Builder builder(items.folder(), items.size());
    for (std::size_t row = 0; row < items.size(); ++row) {
        auto item = items.view(row);
        std::string name;
        icu::UnicodeString::fromUTF8(std::string(item.name)).toLower().toUTF8String(name);
        item.name = name;
        builder.add(item);
    }
    return builder.finish();
}

std::ptrdiff_t countWithFennik(const FileItems& items) {
    const FileMask fileMask(mask);
    std::ptrdiff_t count = 0;
    for (std::size_t row = 0; row < items.size(); ++row)
        count += fileMask.matches(items.view(row)) ? 1 : 0;
    return count;
}

std::ptrdiff_t countWithSystem(const std::vector<std::string>& names) {
    return std::ranges::count_if(
        names, [](const std::string& name) { return fnmatch(mask, name.c_str(), 0) == 0; });
}

template <class Measured>
void add(const char* name, Measured measured) {
    benchmark::RegisterBenchmark(name, [measured](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
            benchmark::DoNotOptimize(measured());
    })->Unit(benchmark::kMillisecond);
}

/// An operation on marks that are made anew each time, which does not count.
template <class Operation>
void addOnMarks(const char* name, const MarkState& marks, Operation operation) {
    benchmark::RegisterBenchmark(name, [&marks, operation](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state) {
            state.PauseTiming();
            auto changing = marks;
            state.ResumeTiming();
            operation(changing);
            state.PauseTiming();
            changing = {};
            state.ResumeTiming();
        }
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
    const auto names = namesOf(items);
    MarkState everyone;
    everyone.markAll(items);
    // Half of them, as then neither the marked nor the others are few.
    MarkState half;
    for (std::size_t row = 0; row < items.size(); row += 2)
        half.toggle(items.view(row).name);
    const auto lower = lowered(items);
    const auto lowerNames = namesOf(lower);
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr)
        giveUp("The locale C.UTF-8 is missing.");
    if (countWithFennik(lower) != countWithSystem(lowerNames))
        giveUp("The ways of matching do not find the same.");

    add("hash set", [&] {
        std::unordered_set<std::string> set;
        for (const auto& name : names)
            set.insert(name);
        return set;
    });
    addOnMarks("mark all", MarkState(), [&](MarkState& marks) { marks.markAll(items); });
    addOnMarks("invert", half, [&](MarkState& marks) { marks.invert(items); });
    addOnMarks("prune", everyone, [&](MarkState& marks) { marks.prune(items); });
    add("totals", [&] { return MarkTotals::of(items, everyone, {}); });
    add("mask", [&] { return countWithFennik(lower); });
    add("fnmatch", [&] { return countWithSystem(lowerNames); });
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
