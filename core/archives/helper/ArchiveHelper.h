#pragma once

#include "core/archives/ArchivePacker.h"
#include "core/archives/EntryStream.h"
#include "core/helper/HelperSide.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace fennik {

/// The only argument of a program that is to be a helper.
constexpr std::string_view archiveHelperOption = "--archive-helper";

/// What a helper does its work with, and how much it may use.
struct HelperWork {
    /// Opens the archive that lies behind an open file, and takes the descriptor over.
    std::function<EntryStream::Result<std::unique_ptr<EntryStream>>(
        int descriptor, const ArchiveRequest& request, IsCancelled isCancelled)>
        open;
    const ArchivePacker& packer;
    /// While it reads, besides what it uses at its start.
    std::int64_t memory = std::int64_t{2} << 30;
    /// Of the processor while it reads, each time until it has come to another entry or to more of
    /// its data. What it reads of the file on the way counts too, once.
    std::chrono::seconds processorTime{20};
};

/// The whole life of a process that reads or packs one archive for another one, which has started
/// it as a `HelperProcess`. Returns its exit code. A program calls it at its very beginning.
int runArchiveHelper();
/// The same with other means.
int runArchiveHelper(const HelperWork& work);

} // namespace fennik
