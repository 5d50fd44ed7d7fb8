#include "app/main/Screenshot.h"

#include "app/main/PictureFile.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QTimer>

#include <iostream>

namespace fennik::app {

namespace {

constexpr int patience = 10'000; // ms
constexpr int checkEvery = 20;   // ms

bool hasSettled(Session& session) {
    return session.window().isVisible() && session.app().panel(PanelSide::left).settled() &&
           session.app().panel(PanelSide::right).settled();
}

} // namespace

int takeScreenshot(Session& session, const std::string& file) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer timer;
    bool wasSettled = false;
    QObject::connect(&timer, &QTimer::timeout, qApp, [&] {
        // Once more after settling, so that what the views asked for last is drawn too.
        const bool isSettled = hasSettled(session);
        if ((isSettled && wasSettled) || elapsed.elapsed() > patience)
            QApplication::quit();
        wasSettled = isSettled;
    });
    timer.start(checkEvery);
    session.start();
    QApplication::exec();

    const auto written = writePicture(session.window().grab().toImage(), file);
    if (written)
        return 0;
    std::cerr << written.error() << '\n';
    return 1;
}

} // namespace fennik::app
