#pragma once

#include "app/model/PendingAnswer.h"
#include "core/base/FileUrl.h"

#include <optional>
#include <string>
#include <utility>

namespace fennik::app {

enum class WasWrong { no, yes };

/// A password that a worker waits for; the answer is none where the user gives up.
struct PendingPassword final : PendingAnswer<std::optional<std::string>> {
    enum class Asker { panel, job };

    PendingPassword(Asker waiting, FileUrl archiveFile, std::string encryptionLabel,
                    WasWrong lastWasWrong)
        : asker(waiting),
          archive(std::move(archiveFile)),
          encryption(std::move(encryptionLabel)),
          wasWrong(lastWasWrong) {}

    const Asker asker;
    const FileUrl archive;
    const std::string encryption; ///< "AES-256"; empty where it is not known
    const WasWrong wasWrong;      ///< what was tried before
};

} // namespace fennik::app
