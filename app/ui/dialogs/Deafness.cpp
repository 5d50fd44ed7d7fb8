#include "app/ui/dialogs/Deafness.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <chrono>

namespace fennik::ui {

namespace {

constexpr auto deafFor = std::chrono::milliseconds(400);

} // namespace

Deafness::Deafness(QWidget& card) : QObject(&card), card_(card) {
    ends_.setSingleShot(true);
    ends_.setInterval(deafFor);
    qApp->installEventFilter(this);
}

bool Deafness::eventFilter(QObject* watched, QEvent* event) {
    const auto type = event->type();
    if (watched == &card_ && type == QEvent::Show)
        ends_.start();
    const bool isKey = type == QEvent::KeyPress || type == QEvent::ShortcutOverride;
    if (!isKey || !ends_.isActive())
        return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || !(widget == &card_ || card_.isAncestorOf(widget)))
        return false;
    event->accept();
    return true;
}

} // namespace fennik::ui
