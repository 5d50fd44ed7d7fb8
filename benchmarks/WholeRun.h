#pragma once

#include "benchmarks/Tools.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <vector>

namespace fennik::bench {

/// Registers work that is done once in each repetition.
template <class Work>
void addWholeRun(const std::string& name, const Work& work) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [work](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state)
                                         work();
                                 })
        ->Iterations(1)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

/// The same for a run of a tool, if it is installed.
inline void addTool(const std::string& name, const std::vector<std::string>& words) {
    if (std::filesystem::exists("/usr/bin/" + words.front()))
        addWholeRun(name, [words] { runTool(words); });
}

} // namespace fennik::bench
