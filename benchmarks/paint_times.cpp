// Moves the cursor in a folder that is shown, and measures how long each press takes until its
// picture is painted:
//   paint_times FOLDER PRESSES
// Prints for a cursor that moves within the view, and for one that scrolls, the median and the
// longest time in nanoseconds: "within=… within_most=… scrolling=… scrolling_most=…".
#include "benchmarks/ShownSession.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <vector>

namespace {

using namespace fennik;

/// Presses one key down and up again, so that every press finds the same view, or down alone.
enum class Way { within, scrolling };

std::vector<long long> times(bench::ShownSession& session, Way way, int count) {
    constexpr std::ptrdiff_t middle = 100; // far from both ends of the view and of the folder
    session.panel().setCursor(0);
    session.panel().setCursor(way == Way::within ? 3 : middle);
    session.repaint();
    std::vector<long long> result;
    for (int press = 0; press < count; ++press) {
        const bool isBack = way == Way::within && press % 2 != 0;
        const auto begin = std::chrono::steady_clock::now();
        session.press(isBack ? Qt::Key_Up : Qt::Key_Down);
        session.waitForPaint();
        result.push_back((std::chrono::steady_clock::now() - begin) / std::chrono::nanoseconds(1));
    }
    std::ranges::sort(result);
    return result;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const int count = argumentCount == 3 ? std::atoi(arguments[2]) : 0;
    if (count <= 0)
        return 2;
    bench::ShownSession session(argumentCount, arguments, arguments[1], arguments[1]);
    for (const auto way : {Way::within, Way::scrolling})
        times(session, way, count); // what is drawn for the first time ever takes longer
    const auto within = times(session, Way::within, count);
    const auto scrolling = times(session, Way::scrolling, count);
    std::cout << "within=" << within[within.size() / 2] << " within_most=" << within.back()
              << " scrolling=" << scrolling[scrolling.size() / 2]
              << " scrolling_most=" << scrolling.back() << '\n';
    return 0;
}
