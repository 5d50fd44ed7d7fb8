#include "app/model/PasswordDesk.h"

#include <mutex>
#include <utility>
#include <vector>

namespace fennik::app {

/// What the threads that ask have in common with the main thread.
struct PasswordDesk::Shared : std::enable_shared_from_this<Shared> {
    Shared(Executor& mainThread, std::function<void(std::shared_ptr<PendingPassword>)> told)
        : main(mainThread), asked(std::move(told)) {}

    std::optional<std::string> ask(const std::shared_ptr<PendingPassword>& pending);
    void tell(const std::shared_ptr<PendingPassword>& pending);

    Executor& main;
    std::function<void(std::shared_ptr<PendingPassword>)> asked; ///< main thread only

    std::mutex lock; ///< guards what follows
    std::vector<std::shared_ptr<PendingPassword>> waiting;
    bool isClosed = false;
};

std::optional<std::string>
PasswordDesk::Shared::ask(const std::shared_ptr<PendingPassword>& pending) {
    {
        const std::lock_guard guard(lock);
        if (isClosed)
            return std::nullopt;
        waiting.push_back(pending);
    }
    main.execute([shared = shared_from_this(), pending] { shared->tell(pending); });
    auto password = pending->wait();
    const std::lock_guard guard(lock);
    std::erase(waiting, pending);
    return password;
}

void PasswordDesk::Shared::tell(const std::shared_ptr<PendingPassword>& pending) {
    {
        const std::lock_guard guard(lock);
        if (isClosed)
            return;
    }
    if (!pending->isAnswered())
        asked(pending);
}

PasswordDesk::PasswordDesk(Executor& main,
                           std::function<void(std::shared_ptr<PendingPassword>)> asked)
    : shared_(std::make_shared<Shared>(main, std::move(asked))) {}

PasswordDesk::~PasswordDesk() {
    close();
}

AskPassword PasswordDesk::askingFor(PendingPassword::Asker asker) const {
    return [shared = shared_, asker](const FileUrl& archive, const ArchiveError& reason) {
        const bool wasWrong = reason.kind == ArchiveError::Case::wrongPassword;
        return shared->ask(std::make_shared<PendingPassword>(
            asker, archive, reason.encryption, wasWrong ? WasWrong::yes : WasWrong::no));
    };
}

void PasswordDesk::giveUp(PendingPassword::Asker asker) {
    const std::lock_guard guard(shared_->lock);
    for (const auto& pending : shared_->waiting) {
        if (pending->asker == asker)
            pending->answer(std::nullopt);
    }
}

void PasswordDesk::close() {
    const std::lock_guard guard(shared_->lock);
    shared_->isClosed = true;
    for (const auto& pending : shared_->waiting)
        pending->answer(std::nullopt);
}

} // namespace fennik::app
