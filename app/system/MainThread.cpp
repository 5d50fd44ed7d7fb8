#include "app/system/MainThread.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QTimer>

#include <memory>
#include <utility>

namespace fennik::system {

void MainThread::execute(Task task) {
    // Qt copies what it runs later, and a task can only be moved.
    auto shared = std::make_shared<Task>(std::move(task));
    QMetaObject::invokeMethod(qApp, [shared] { (*shared)(); }, Qt::QueuedConnection);
}

void MainThread::executeAfter(std::chrono::milliseconds delay, Task task) {
    auto shared = std::make_shared<Task>(std::move(task));
    QTimer::singleShot(delay, qApp, [shared] { (*shared)(); });
}

} // namespace fennik::system
