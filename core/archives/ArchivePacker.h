#pragma once

#include "core/archives/PackOptions.h"
#include "core/base/FileUrl.h"
#include "core/operations/OperationContext.h"

#include <vector>

namespace fennik {

/// Packs into new archives.
class ArchivePacker {
public:
    virtual ~ArchivePacker() = default;

    /// Makes the archive `destination` of the sources, as the work of a job: progress, pause,
    /// cancellation, what was left out and the undo step go to the context. False after a failure,
    /// of which the context has been told in one sentence, and after a cancellation; then nothing
    /// is left of the archive. Never replaces anything. Waits for the disk; used on a worker.
    virtual bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
                      const PackOptions& options, OperationContext& context) const = 0;
};

/// Packs in this process.
class DirectPacker final : public ArchivePacker {
public:
    bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
              const PackOptions& options, OperationContext& context) const override;
};

} // namespace fennik
