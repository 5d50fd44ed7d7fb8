#pragma once

#include "core/base/FileUrl.h"
#include "core/base/Uuid.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace fennik::app {

enum class WasWrong { no, yes };

/// A password that a worker waits for: shared between it and the main thread, where the user is
/// asked.
class PendingPassword {
public:
    enum class Asker { panel, job };

    PendingPassword(Asker waiting, FileUrl archiveFile, std::string encryptionLabel,
                    WasWrong lastWasWrong);

    const Uuid id = Uuid::random();
    const Asker asker;
    const FileUrl archive;
    const std::string encryption; ///< "AES-256"; empty where it is not known
    const WasWrong wasWrong;      ///< what was tried before

    /// None: the user gives up. The first answer counts. Safe on any thread.
    void answer(std::optional<std::string> password);
    bool isAnswered() const;
    /// Returns the answer once there is one.
    std::optional<std::string> wait();

private:
    mutable std::mutex lock_;
    std::condition_variable answered_;
    bool isAnswered_ = false;
    std::optional<std::string> password_;
};

} // namespace fennik::app
