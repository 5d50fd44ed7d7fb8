#include "benchmarks/ShownSession.h"

#include "app/ui/PanelView.h"
#include "app/ui/WindowStyle.h"

#include <QEvent>
#include <QKeyEvent>

namespace fennik::bench {

namespace {

int& withoutScreen(int& argumentCount) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setStyle(new ui::WindowStyle);
    return argumentCount;
}

} // namespace

ShownSession::ShownSession(int argumentCount, char** arguments, const std::string& left,
                           const std::string& right)
    : argumentCount_(argumentCount),
      application_(withoutScreen(argumentCount_), arguments),
      session_({.left = left, .right = right}) {
    app().settings().set(app::SettingKeys::autoFolderSizes, false);
    table().viewport()->installEventFilter(this);
    session_.start();
    for (const auto side : {app::PanelSide::left, app::PanelSide::right}) {
        while (!app().panel(side).settled())
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    while (!table().hasFocus())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    repaint();
}

ui::PanelTable& ShownSession::table() {
    return session_.window().view(app::PanelSide::left).table();
}

ShownSession::~ShownSession() {
    session_.shutDown();
}

void ShownSession::press(Qt::Key key, const QString& text) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(&table(), &event);
}

void ShownSession::waitForPaint() {
    wasPainted_ = false;
    while (!wasPainted_)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QApplication::processEvents();
}

void ShownSession::repaint() {
    table().viewport()->update();
    waitForPaint();
}

bool ShownSession::eventFilter(QObject*, QEvent* event) {
    wasPainted_ = wasPainted_ || event->type() == QEvent::Paint;
    return false;
}

} // namespace fennik::bench
