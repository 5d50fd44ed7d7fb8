// Adds up one tree and prints the peak of its memory in KiB; then does it again several times,
// cancelled at different moments, and prints the longest time to the end in nanoseconds.
#include "core/listing/FolderSizer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

namespace {

using namespace fennik;
using Clock = std::chrono::steady_clock;

/// In KiB, since this program began.
std::string peakOfMemory() {
    std::ifstream facts("/proc/self/status");
    std::string word;
    while (facts >> word && word != "VmHWM:") {
    }
    facts >> word;
    return word;
}

/// Zero when the tree was done before its time came.
Clock::duration timeToEnd(const FileUrl& folder, Clock::duration cancelAfter) {
    std::atomic<bool> isCancelled = false;
    Clock::time_point cancelled;
    std::jthread canceller([&] {
        std::this_thread::sleep_for(cancelAfter);
        cancelled = Clock::now();
        isCancelled = true;
    });
    const auto result =
        FolderSizer::size(systemFileSystem(), folder, [&] { return isCancelled.load(); });
    const auto ended = Clock::now();
    canceller.join();
    return result ? Clock::duration() : ended - cancelled;
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2)
        return 2;
    const FileUrl folder(arguments[1]);
    const auto started = Clock::now();
    if (!FolderSizer::size(systemFileSystem(), folder, [] { return false; }))
        return 1;
    const auto whole = Clock::now() - started;
    const auto peak = peakOfMemory();
    Clock::duration longest{};
    constexpr int moments = 20;
    for (int moment = 0; moment < moments; ++moment)
        longest = std::max(longest, timeToEnd(folder, whole * moment / moments));
    std::cout << "peak=" << peak << " cancelled="
              << std::chrono::duration_cast<std::chrono::nanoseconds>(longest).count() << '\n';
    return 0;
}
