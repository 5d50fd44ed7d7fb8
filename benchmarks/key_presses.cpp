// For callgrind: presses keys in a folder that is shown, and counts the instructions of the presses
// alone, with all the painting they cause. Each kind of press is a dump of its own:
//   key_presses FOLDER PRESSES
#include "benchmarks/ShownSession.h"

#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <valgrind/callgrind.h>

namespace {

using namespace fennik;

/// Where all presses find their rows in view, and where each scrolls.
constexpr std::ptrdiff_t rowInView = 2;
constexpr std::ptrdiff_t rowBelow = 100;

/// What is done before presses that count.
using Preparation = std::function<void()>;

struct Presses {
    const char* name = nullptr;
    std::ptrdiff_t row = 0; ///< of the cursor before the first one
    Qt::Key key = {};
    QString text = {};
    Preparation prepareAll = [] {};
    Preparation prepareEach = [] {};
};

void pressAll(bench::ShownSession& session, const Presses& presses, int count) {
    presses.prepareAll();
    session.panel().setCursor(0);
    session.panel().setCursor(presses.row);
    session.repaint();
    for (int press = 0; press < count; ++press) {
        presses.prepareEach();
        CALLGRIND_TOGGLE_COLLECT;
        session.press(presses.key, presses.text);
        session.waitForPaint();
        CALLGRIND_TOGGLE_COLLECT;
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    const int count = std::atoi(arguments[2]);
    bench::ShownSession session(argumentCount, arguments, arguments[1], arguments[1]);
    auto& panel = session.panel();
    const auto unmarkAll = [&] { panel.unmarkAll(); };
    const auto markOthers = [&] {
        panel.markAll();
        for (int press = 0; press < count; ++press)
            panel.toggleMark(std::size_t(rowInView + press));
    };
    const auto endSearch = [&] {
        session.press(Qt::Key_Home);
        session.repaint();
    };
    CALLGRIND_START_INSTRUMENTATION;
    for (const Presses& presses : std::initializer_list<Presses>{
             {.name = "cursor", .row = rowInView, .key = Qt::Key_Down},
             {.name = "scroll", .row = rowBelow, .key = Qt::Key_Down},
             {.name = "mark", .row = rowInView, .key = Qt::Key_Insert, .prepareAll = unmarkAll},
             {.name = "mark more",
              .row = rowInView,
              .key = Qt::Key_Insert,
              .prepareAll = markOthers},
             {.name = "type",
              .key = Qt::Key_S,
              .text = QStringLiteral("s"),
              .prepareAll = unmarkAll,
              .prepareEach = endSearch}}) {
        // What is drawn for the first time ever takes longer.
        pressAll(session, presses, count);
        CALLGRIND_ZERO_STATS;
        pressAll(session, presses, count);
        CALLGRIND_DUMP_STATS_AT(presses.name);
    }
    return 0;
}
