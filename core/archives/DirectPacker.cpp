#include "core/archives/ArchiveError.h"
#include "core/archives/ArchiveLocale.h"
#include "core/archives/ArchivePacker.h"
#include "core/archives/ArchiveWriter.h"
#include "core/archives/PackCollector.h"
#include "core/base/CzechText.h"
#include "core/operations/ClampedSum.h"
#include "core/operations/FolderNode.h"
#include "core/platform/RegularFile.h"
#include "core/platform/UnfinishedFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <utility>

namespace fennik {

namespace {

/// So little that the slowest compression lets go of a stop or a pause in a moment.
constexpr std::size_t chunkSize = std::size_t{128} * 1024;

/// How long somebody is waited for who holds a lease on a file: between two tries, and how often.
constexpr std::chrono::milliseconds waitForOthers{50};
constexpr int mostWaits = 20;

/// One archive on its way. What returns a bool says whether to go on; where not, the context knows
/// of the failure or has been cancelled.
class Packing {
public:
    Packing(const FileUrl& destination, const PackOptions& options, OperationContext& context)
        : destination_(destination), options_(options), context_(context) {}

    bool run(const std::vector<FileUrl>& sources);

private:
    bool findPlace();
    bool collect(const std::vector<FileUrl>& sources);
    bool make();
    bool writeAll(UnfinishedFile& file);
    bool writeItem(const PackItem& item);
    bool writeLink(const PackItem& item, const OpenFolder& folder);
    bool writeFile(const PackItem& item, const OpenFolder& folder);
    bool writeContent(const PackItem& item, const RegularFile& file);
    bool begin(const PackItem& item, std::string linkTarget = {});
    RegularFile::Result<RegularFile> openPatiently(const PackItem& item, const OpenFolder& folder);
    bool leaveOut(const PackItem& item);
    bool done();
    void discard(UnfinishedFile& file);

    bool check(const ArchiveWriter::Result<void>& result);
    bool goesOn() { return context_.checkpoint() == Checkpoint::goOn; }
    bool fail(std::string sentence);
    bool failSaving(const PosixError& error) {
        return fail("Archiv nejde uložit: " + error.reason());
    }

    const FileUrl& destination_;
    const PackOptions& options_;
    OperationContext& context_;
    OpenFolders folders_;
    PackPlace place_;
    PackItems items_;
    std::int64_t totalBytes_ = 0;
    std::unique_ptr<ArchiveWriter> writer_;
    std::vector<std::byte> buffer_ = std::vector<std::byte>(chunkSize);
};

bool Packing::run(const std::vector<FileUrl>& sources) {
    if (!options_.password.empty() && options_.format != ArchiveFormat::zip)
        return fail("Heslo umí jen formát ZIP.");
    return findPlace() && collect(sources) && make();
}

bool Packing::findPlace() {
    auto folder = FolderNode::at(folders_, destination_.parent());
    const auto held = folder ? (*folder)->open() : std::unexpected(folder.error());
    if (!held)
        return failSaving(held.error());
    const auto status = (*held)->status(std::string(destination_.lastComponent()));
    if (!status && status.error().code != ENOENT)
        return failSaving(status.error());
    place_.folder = std::move(*folder);
    if (status)
        place_.archive = status->identity();
    return true;
}

bool Packing::collect(const std::vector<FileUrl>& sources) {
    auto items = PackCollector(folders_, place_, options_, context_).collect(sources);
    if (!items)
        return false;
    items_ = std::move(*items);
    if (items_.empty())
        return fail("Není co zabalit.");
    if (place_.archive) // it would come out at the end, and nothing is ever replaced
        return failSaving({EEXIST});
    totalBytes_ = items_.bytes();
    context_.setTotals(totalBytes_, static_cast<std::int64_t>(items_.size()));
    return true;
}

bool Packing::make() {
    const auto held = place_.folder->open();
    if (!held)
        return failSaving(held.error());
    UnfinishedFile::removeAbandoned(**held);
    auto file = UnfinishedFile::create(*held);
    if (!file)
        return failSaving(file.error());
    if (!writeAll(*file) || !goesOn()) {
        discard(*file);
        return false;
    }
    const auto published = file->publish(std::string(destination_.lastComponent()));
    if (!published) {
        discard(*file);
        return failSaving(published.error());
    }
    context_.addStep(UndoSteps::Created{destination_});
    return true;
}

bool Packing::writeAll(UnfinishedFile& file) {
    const ArchiveLocale locale;
    auto writer = ArchiveWriter::open(options_, [&](std::span<const std::byte> bytes) {
        return goesOn() ? file.write(bytes) : std::unexpected(PosixError{ECANCELED});
    });
    if (!writer)
        return fail(writer.error());
    writer_ = std::make_unique<ArchiveWriter>(*std::move(writer));
    bool isWritten = true;
    for (std::size_t i = 0; i < items_.size() && isWritten; ++i)
        isWritten = goesOn() && writeItem(items_[i]);
    isWritten = isWritten && goesOn() && check(writer_->finish());
    writer_.reset();
    if (!isWritten)
        return false;
    if (const auto synced = file.sync(); !synced)
        return fail(
            ArchiveError{ArchiveError::Case::writeFailed, synced.error().reason()}.message());
    return true;
}

bool Packing::writeItem(const PackItem& item) {
    context_.setCurrentName(item.name);
    if (item.type == FileType::directory)
        return begin(item) && done();
    const auto folder = item.folder->open();
    if (!folder)
        return fail(unreadable(item.name, folder.error()));
    return item.type == FileType::symlink ? writeLink(item, **folder) : writeFile(item, **folder);
}

bool Packing::writeLink(const PackItem& item, const OpenFolder& folder) {
    auto target = folder.linkTarget(item.name);
    if (!target) { // EINVAL: no link any more
        const int code = target.error().code;
        return fail(unreadable(item.name, {code == EINVAL ? ESTALE : code}));
    }
    if (!canHold(options_.format, *target))
        return fail(quoted(item.name) + " nejde zabalit: formát neumí cíl odkazu.");
    return begin(item, std::move(*target)) && done();
}

bool Packing::writeFile(const PackItem& item, const OpenFolder& folder) {
    const auto file = openPatiently(item, folder);
    if (!file && file.error().code == ESTALE)
        return leaveOut(item);
    if (!file)
        return fail(unreadable(item.name, file.error()));
    const auto& opened = file->opened();
    if (opened.identity() != item.identity)
        return fail(unreadable(item.name, {ESTALE}));
    // What it has lost since it was collected will be missed at its end.
    auto packed = item;
    packed.size = std::max(item.size, opened.size);
    packed.modified = opened.modified;
    packed.mode = opened.mode;
    if (packed.size > item.size) {
        addClamped(totalBytes_, packed.size - item.size);
        context_.setTotals(totalBytes_, static_cast<std::int64_t>(items_.size()));
    }
    return begin(packed) && writeContent(packed, *file) && done();
}

bool Packing::writeContent(const PackItem& item, const RegularFile& file) {
    for (auto left = item.size; left > 0;) {
        if (!goesOn())
            return false;
        const auto most = std::min(left, static_cast<std::int64_t>(buffer_.size()));
        const auto read = file.read(std::span(buffer_).first(static_cast<std::size_t>(most)));
        if (!read)
            return fail(unreadable(item.name, read.error()));
        if (*read == 0)
            return fail(quoted(item.name) + ": čtení skončilo předčasně");
        if (!check(writer_->write(std::span(buffer_).first(*read))))
            return false;
        left -= static_cast<std::int64_t>(*read);
        context_.bytesWritten(static_cast<std::int64_t>(*read));
    }
    // Not every file says how long it is or when it was written.
    const auto more = file.read(std::span(buffer_).first(1));
    const auto after = file.status();
    if (!more || !after)
        return fail(unreadable(item.name, (more ? after.error() : more.error())));
    if (*more > 0 || after->modified != item.modified)
        context_.addError(quoted(item.name) +
                          " se během balení měnil, a tak v archivu nemusí být celý.");
    return true;
}

bool Packing::begin(const PackItem& item, std::string linkTarget) {
    return check(writer_->begin({.path = item.path,
                                 .type = item.type,
                                 .size = item.size,
                                 .modified = item.modified,
                                 .mode = item.mode,
                                 .linkTarget = std::move(linkTarget)}));
}

RegularFile::Result<RegularFile> Packing::openPatiently(const PackItem& item,
                                                        const OpenFolder& folder) {
    auto file = RegularFile::open(folder, item.name);
    for (int waits = 0; waits < mostWaits && !file && file.error().code == EAGAIN && goesOn();
         ++waits) {
        std::this_thread::sleep_for(waitForOthers);
        file = RegularFile::open(folder, item.name);
    }
    return file;
}

bool Packing::leaveOut(const PackItem& item) {
    context_.addError(unpackable(item.name));
    context_.bytesAccounted(item.size);
    return true;
}

bool Packing::done() {
    context_.filesDone(1);
    return true;
}

void Packing::discard(UnfinishedFile& file) {
    if (const auto discarded = file.discard(); !discarded) {
        context_.addStep(UndoSteps::Created{place_.folder->url().appending(file.name())});
        context_.addError("Rozpracovaný soubor " + quoted(file.name()) +
                          " nejde odstranit: " + discarded.error().reason());
    }
}

bool Packing::check(const ArchiveWriter::Result<void>& result) {
    return result || fail(result.error());
}

bool Packing::fail(std::string sentence) {
    // Who has cancelled wants to hear no more of it, least of all what comes of stopping.
    if (!context_.isCancelled())
        context_.fail(std::move(sentence));
    return false;
}

} // namespace

bool DirectPacker::pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
                        const PackOptions& options, OperationContext& context) const {
    return Packing(destination, options, context).run(sources);
}

} // namespace fennik
