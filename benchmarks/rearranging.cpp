// Sorts a folder that is shown anew, and shows and hides its hidden files:
//   rearranging FOLDER EMPTY_FOLDER ROUNDS
// Prints of each round, in nanoseconds, how long the main thread was busy. For strace, it asks for
// files of the names "begin" and "end" around all rounds.
#include "benchmarks/ShownSession.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

using namespace fennik;
using Clock = std::chrono::steady_clock;

template <class Work>
std::int64_t timeOf(bench::ShownSession& session, Work work) {
    const auto started = Clock::now();
    work();
    const auto took = Clock::now() - started;
    session.waitForPaint();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(took).count();
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4)
        return 2;
    bench::ShownSession session(argumentCount, arguments, arguments[1], arguments[2]);
    const auto timeToSort = [&](SortKey key) {
        return timeOf(session, [&] { session.panel().chooseSort(key); });
    };
    const auto timeToToggle = [&] {
        return timeOf(session, [&] { session.app().perform(app::KAction::toggleHidden); });
    };
    [[maybe_unused]] auto exists = access("begin", F_OK);
    for (int round = 0; round < std::atoi(arguments[3]); ++round) {
        const auto bySize = timeToSort(SortKey::size);
        const auto byDate = timeToSort(SortKey::modified);
        const auto byName = timeToSort(SortKey::name);
        const auto hidden = timeToToggle();
        std::cout << "size=" << bySize << " date=" << byDate << " name=" << byName
                  << " hidden=" << hidden << '\n';
    }
    exists = access("end", F_OK);
    return 0;
}
