#pragma once

#include "core/archives/ArchivePacker.h"
#include "core/platform/OwnProcess.h"

#include <string>

namespace fennik {

/// Packs in a process of its own, which keeps what it needs besides the archive on the volume of
/// the archive. Safe on any thread.
class HelperPacker final : public ArchivePacker {
public:
    /// As for `HelperArchives`.
    explicit HelperPacker(std::string program = OwnProcess::program());

    bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
              const PackOptions& options, OperationContext& context) const override;

private:
    std::string program_;
};

} // namespace fennik
