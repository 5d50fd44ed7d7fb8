#include "core/archives/EntryWriter.h"

#include "core/archives/EntryTraits.h"
#include "core/base/CzechText.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace fennik {

namespace {

constexpr std::int64_t largestSmall = 64 << 10;

} // namespace

EntryWriter::EntryWriter(TransferLedger& ledger, FullDisk& disk, FileCompleter& completer,
                         EntryStream& stream, const StreamEntry& entry,
                         const EntryStream::Block& first)
    : ledger_(ledger),
      disk_(disk),
      completer_(completer),
      stream_(stream),
      entry_(entry),
      block_(first),
      isSmall_(entry.declaresSize && entry.entry.size <= largestSmall),
      expected_(entry.entry.size) {}

std::expected<EntryWriter::Filled, EntryWriter::Made>
EntryWriter::write(const FolderNode& folder, const FolderNode::Held& held,
                   const std::string& name) {
    auto file = completer_.make(*held, name);
    if (!file && file.error().code == EEXIST) {
        wasTaken_ = true;
        return std::unexpected(Made::taken);
    }
    if (!file) {
        ledger_.failed(failure(file.error()).sentence);
        return std::unexpected(Made::failed);
    }
    const auto& entry = entry_.entry;
    Work work{.file = *std::move(file),
              .folder = held,
              .mode = plainMode(entry),
              .modified = entry.modified};
    if (const auto why = fill(work)) {
        if (const auto removed = work.file.discard(); !removed)
            tellLeftover(ledger_, folder.url().appending(name), removed.error());
        if (why->how == Made::failed) {
            ledger_.accounted(expected_ - written_);
            ledger_.failed(why->sentence);
        }
        return std::unexpected(why->how);
    }
    return Filled{.work = std::move(work),
                  .mayWait = isSmall_ && !wasTaken_,
                  .missing = expected_ - written_};
}

std::optional<EntryWriter::Failure> EntryWriter::fill(Work& work) {
    while (!block_.bytes.empty()) {
        if (auto why = fillBlock(work, block_))
            return why;
        if (ledger_.context().checkpoint() == Checkpoint::stop)
            return Failure{Made::stopped};
        const auto next = stream_.read();
        if (!next)
            return failure(next.error());
        block_ = *next;
    }
    work.size = std::max(end_, block_.offset);
    if (entry_.declaresSize && work.size > entry_.entry.size)
        return failure("v archivu je víc dat, než kolik uvádí.");
    if (entry_.declaresSize && work.size < entry_.entry.size)
        return failure("data v archivu jsou neúplná.");
    return std::nullopt;
}

std::optional<EntryWriter::Failure> EntryWriter::fillBlock(Work& work,
                                                           const EntryStream::Block& block) {
    const auto count = static_cast<std::int64_t>(block.bytes.size());
    // What opens the archive may be in the hands of whoever has made it.
    if (block.offset < end_ || block.offset > std::numeric_limits<std::int64_t>::max() - count)
        return failure("data v archivu nenavazují.");
    if (entry_.declaresSize && block.offset + count > entry_.entry.size)
        return failure("v archivu je víc dat, než kolik uvádí.");
    if (const auto done = put(work, block); !done)
        return failure(done.error());
    end_ = block.offset + count;
    written_ += count;
    if (written_ > expected_) {
        ledger_.recount({.bytes = expected_, .files = 0}, {.bytes = written_, .files = 0});
        expected_ = written_;
    }
    ledger_.written(count);
    return std::nullopt;
}

OpenFolder::Result<void> EntryWriter::put(Work& work, const EntryStream::Block& block) const {
    if (!isSmall_)
        return work.file.write(block.offset, block.bytes);
    const auto offset = static_cast<std::size_t>(block.offset);
    work.content.resize(offset); // what lies between two blocks is zeros
    work.content.insert(work.content.end(), block.bytes.begin(), block.bytes.end());
    return {};
}

EntryWriter::Failure EntryWriter::failure(const std::string& what) const {
    return {Made::failed, quoted(nameOf(entry_.entry)) + ": " + what};
}

EntryWriter::Failure EntryWriter::failure(const PosixError& error) {
    disk_.failed(error);
    return failure(error.reason());
}

EntryWriter::Failure EntryWriter::failure(const ArchiveError& error) const {
    if (error.kind == ArchiveError::Case::cancelled)
        return {Made::stopped};
    return {Made::failed, sentenceOf(entry_.entry, error)};
}

void EntryWriter::tellLeftover(TransferLedger& ledger, const FileUrl& file, const PosixError& why) {
    ledger.context().addStep(UndoSteps::Created{file});
    ledger.failed("Rozpracovaný soubor " + quoted(file.lastComponent()) +
                  " nejde odstranit: " + why.reason());
}

} // namespace fennik
