#include "app/system/MainThread.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <memory>
#include <utility>

namespace fennik::system {

void MainThread::execute(Task task) {
    // Qt copies what it runs later, and a task can only be moved.
    auto shared = std::make_shared<Task>(std::move(task));
    QMetaObject::invokeMethod(qApp, [shared] { (*shared)(); }, Qt::QueuedConnection);
}

} // namespace fennik::system
