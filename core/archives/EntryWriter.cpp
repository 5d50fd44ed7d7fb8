#include "core/archives/EntryWriter.h"

#include "core/archives/EntryTraits.h"
#include "core/base/CzechText.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace fennik {

EntryWriter::EntryWriter(TransferLedger& ledger, FullDisk& disk, EntryStream& stream,
                         const StreamEntry& entry, const EntryStream::Block& first)
    : ledger_(ledger),
      disk_(disk),
      stream_(stream),
      entry_(entry),
      block_(first),
      expected_(entry.entry.size) {}

EntryWriter::Made EntryWriter::write(const FolderNode& folder, const OpenFolder& held,
                                     const std::string& name) {
    auto file = NewFile::make(held, name);
    if (!file && file.error().code == EEXIST)
        return Made::taken;
    if (!file) {
        ledger_.failed(failure(file.error()).sentence);
        return Made::failed;
    }
    identity_ = file->identity();
    if (const auto why = fill(*file)) {
        discard(*file, folder, name);
        if (why->how == Made::failed) {
            ledger_.accounted(expected_ - written_);
            ledger_.failed(why->sentence);
        }
        return why->how;
    }
    disk_.tookOne();
    ledger_.accounted(expected_ - written_);
    ledger_.filesDone(1);
    ledger_.context().addStep(UndoSteps::Created{folder.url().appending(name)});
    return Made::done;
}

std::optional<EntryWriter::Failure> EntryWriter::fill(NewFile& file) {
    while (!block_.bytes.empty()) {
        if (auto why = fillBlock(file, block_))
            return why;
        if (ledger_.context().checkpoint() == Checkpoint::stop)
            return Failure{Made::stopped};
        const auto next = stream_.read();
        if (!next)
            return failure(next.error());
        block_ = *next;
    }
    const auto size = std::max(end_, block_.offset);
    if (entry_.declaresSize && size > entry_.entry.size)
        return failure("v archivu je víc dat, než kolik uvádí.");
    if (entry_.declaresSize && size < entry_.entry.size)
        return failure("data v archivu jsou neúplná.");
    const auto& entry = entry_.entry;
    if (const auto done = file.finish(size, plainMode(entry), entry.modified); !done)
        return failure(done.error());
    return std::nullopt;
}

std::optional<EntryWriter::Failure> EntryWriter::fillBlock(NewFile& file,
                                                           const EntryStream::Block& block) {
    const auto count = static_cast<std::int64_t>(block.bytes.size());
    // What opens the archive may be in the hands of whoever has made it.
    if (block.offset < end_ || block.offset > std::numeric_limits<std::int64_t>::max() - count)
        return failure("data v archivu nenavazují.");
    if (entry_.declaresSize && block.offset + count > entry_.entry.size)
        return failure("v archivu je víc dat, než kolik uvádí.");
    if (const auto done = file.write(block.offset, block.bytes); !done)
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

void EntryWriter::discard(const NewFile& file, const FolderNode& folder, const std::string& name) {
    const auto removed = file.discard();
    if (removed)
        return;
    ledger_.context().addStep(UndoSteps::Created{folder.url().appending(name)});
    ledger_.failed("Rozpracovaný soubor " + quoted(name) +
                   " nejde odstranit: " + removed.error().reason());
}

} // namespace fennik
