#pragma once

#include "app/model/PendingPassword.h"
#include "core/archives/ArchiveExtractor.h"
#include "core/base/Executor.h"

#include <functional>
#include <memory>

namespace fennik::app {

/// Lets workers wait on the main thread for passwords that the user is to give. Lives on the main
/// thread.
class PasswordDesk {
public:
    /// `asked` is called on the main thread, with a password that a worker waits for.
    PasswordDesk(Executor& main, std::function<void(std::shared_ptr<PendingPassword>)> asked);
    /// As `close`.
    ~PasswordDesk();
    PasswordDesk(const PasswordDesk&) = delete;
    PasswordDesk& operator=(const PasswordDesk&) = delete;

    /// Asks here, also after this is gone. It is to be called on workers.
    AskPassword askingFor(PendingPassword::Asker asker) const;
    /// Those who wait are told that the user gives up.
    void giveUp(PendingPassword::Asker asker);
    /// Everybody who waits is told that the user gives up; so is whoever asks from now on.
    void close();

private:
    struct Shared;
    std::shared_ptr<Shared> shared_;
};

} // namespace fennik::app
