#pragma once

#include "core/base/Executor.h"

#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <memory>

namespace fennik::system {

/// Keeps the computer from going to sleep: by the login manager (org.freedesktop.login1), or where
/// that does not do it, by the desktop (org.freedesktop.PowerManagement.Inhibit). Nothing here
/// waits, and where there is neither, nothing happens. What is held ends with the process at the
/// latest. Main thread only.
class SleepGuard final : public QObject {
    Q_OBJECT

public:
    /// `worker` meets the bus of the system; `main` is the executor of this thread. Both outlive
    /// it.
    SleepGuard(Executor& worker, Executor& main);

    void hold();
    void release();

private:
    void askLogin();
    void askDesktop();

    Executor& worker_;
    Executor& main_;
    bool isWanted_ = false;
    bool isAsking_ = false;
    QDBusUnixFileDescriptor lock_; ///< of the login manager
    uint cookie_ = 0;              ///< of the desktop; 0: none
    std::shared_ptr<int> life_ = std::make_shared<int>();
};

} // namespace fennik::system
