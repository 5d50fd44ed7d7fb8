// Fennik without a screen, for callgrind: presses cursor-down in a folder that is shown, and counts
// the instructions of the presses alone, with all the painting they cause:
//   key_presses FOLDER FIRST_ROW PRESSES
// The cursor stands on FIRST_ROW before the first press that counts.
#include "app/main/Session.h"
#include "app/ui/PanelView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QThread>

#include <cstdlib>
#include <valgrind/callgrind.h>

namespace {

using namespace fennik;

/// Tells when a widget was painted.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }

    /// Painting is put off by the toolkit, and presses must not share one.
    void waitForPaint() {
        wasPainted_ = false;
        while (!wasPainted_)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QApplication::processEvents();
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        wasPainted_ = wasPainted_ || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool wasPainted_ = false;
};

void pressDown(QWidget& table, PaintWatch& watch) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QApplication::sendEvent(&table, &event);
    watch.waitForPaint();
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 4)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QApplication application(argumentCount, arguments);
    const app::Options options{.left = arguments[1], .right = arguments[1]};
    app::Session session(options);
    session.start();
    const auto& left = session.app().panel(app::PanelSide::left);
    const auto& right = session.app().panel(app::PanelSide::right);
    while (left.items().empty() || right.items().empty() || !left.settled() || !right.settled()) {
        QApplication::processEvents();
        QThread::msleep(1);
    }
    auto& table = session.window().view(app::PanelSide::left).table();
    PaintWatch watch(*table.viewport());
    // The listing may have been painted already, and then no paint is on its way.
    table.viewport()->update();
    watch.waitForPaint();
    for (int row = 0; row < std::atoi(arguments[2]); ++row)
        pressDown(table, watch);
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_TOGGLE_COLLECT;
    for (int press = 0; press < std::atoi(arguments[3]); ++press)
        pressDown(table, watch);
    CALLGRIND_TOGGLE_COLLECT;
    session.shutDown();
    return 0;
}
