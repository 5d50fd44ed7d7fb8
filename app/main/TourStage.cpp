#include "app/main/TourStage.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>

namespace fennik::app {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds patience = 5s;
constexpr auto calm = 120ms; ///< what the views ask for last is drawn by then

} // namespace

TourStage::TourStage(Session& session, const TourFiles& files) : session_(session), files_(files) {
    session_.start();
    wait([this] { return window().isVisible(); });
    window().activateWindow();
    wait([] { return QApplication::focusWidget() != nullptr; });
    settle();
}

void TourStage::perform(KAction action) {
    app().perform(action);
    settle();
}

void TourStage::press(Qt::Key key, Qt::KeyboardModifiers held) {
    auto* focus = QApplication::focusWidget();
    if (focus == nullptr)
        return;
    QKeyEvent press(QEvent::KeyPress, key, held);
    QKeyEvent release(QEvent::KeyRelease, key, held);
    QApplication::sendEvent(focus, &press);
    QApplication::sendEvent(focus, &release);
    settle();
}

void TourStage::hold(Qt::Key modifier) {
    QKeyEvent press(QEvent::KeyPress, modifier, Qt::NoModifier);
    QApplication::sendEvent(&window(), &press);
}

void TourStage::type(const QString& text) {
    for (const auto& character : text) {
        auto* focus = QApplication::focusWidget();
        if (focus == nullptr)
            return;
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(character));
        QApplication::sendEvent(focus, &press);
    }
    settle();
}

void TourStage::go(std::string_view name) {
    app().activePanel().jumpTo(name);
    settle();
}

void TourStage::show(PanelSide side, std::string_view name) {
    app().panel(side).navigate(FileUrl(path(name), FileUrl::Form::directory));
    settle();
}

void TourStage::wait(const std::function<bool()>& condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && elapsed.elapsed() < patience.count())
        wait(10ms);
}

void TourStage::wait(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

void TourStage::settle() {
    wait([this] {
        return app().panel(PanelSide::left).settled() && app().panel(PanelSide::right).settled();
    });
    wait(calm);
}

QImage TourStage::picture() {
    wait(calm);
    if (auto* other = QApplication::activeWindow();
        other != nullptr && other != &window() && (other->windowFlags() & Qt::Popup) != Qt::Popup)
        return other->grab().toImage();
    auto image = window().grab().toImage();
    QPainter painter(&image);
    for (auto* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && (widget->windowFlags() & Qt::Popup) == Qt::Popup)
            painter.drawPixmap(window().mapFromGlobal(widget->mapToGlobal(QPoint())),
                               widget->grab());
    }
    return image;
}

} // namespace fennik::app
