#pragma once

#include "core/archives/EntryStream.h"
#include "core/platform/OwnProcess.h"

#include <memory>
#include <string>

namespace fennik {

/// Opens each archive in a process of its own, which may hang, crash or ask for all the memory
/// there is: to whoever reads, the archive is then damaged. One that sleeps for ever, without using
/// the processor, is ended by a cancellation alone. Safe on any thread.
class HelperArchives final : public ArchiveOpener {
public:
    /// `program` calls `runArchiveHelper` when its argument is `archiveHelperOption`.
    explicit HelperArchives(std::string program = OwnProcess::program());

    EntryStream::Result<std::unique_ptr<EntryStream>> open(const ArchiveRequest& request,
                                                           IsCancelled isCancelled) const override;

private:
    std::string program_;
};

} // namespace fennik
