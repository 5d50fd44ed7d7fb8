#include "app/model/PendingPassword.h"

#include <utility>

namespace fennik::app {

PendingPassword::PendingPassword(Asker waiting, FileUrl archiveFile, std::string encryptionLabel,
                                 WasWrong lastWasWrong)
    : asker(waiting),
      archive(std::move(archiveFile)),
      encryption(std::move(encryptionLabel)),
      wasWrong(lastWasWrong) {}

void PendingPassword::answer(std::optional<std::string> password) {
    {
        const std::lock_guard lock(lock_);
        if (std::exchange(isAnswered_, true))
            return;
        password_ = std::move(password);
    }
    answered_.notify_all();
}

bool PendingPassword::isAnswered() const {
    const std::lock_guard lock(lock_);
    return isAnswered_;
}

std::optional<std::string> PendingPassword::wait() {
    std::unique_lock lock(lock_);
    answered_.wait(lock, [this] { return isAnswered_; });
    return password_;
}

} // namespace fennik::app
