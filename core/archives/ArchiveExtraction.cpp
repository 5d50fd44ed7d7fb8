#include "core/archives/ArchiveExtraction.h"

#include "core/archives/ArchiveSupport.h"
#include "core/archives/EntryPath.h"
#include "core/archives/EntryTraits.h"
#include "core/base/CzechText.h"
#include "core/platform/ItemCopy.h"
#include "core/platform/NewItems.h"

#include <cerrno>
#include <utility>

namespace fennik {

namespace {

using Kind = ArchiveEntry::Kind;
using Outcome = NamePlacing::Outcome;
using Made = NamePlacing::Made;

/// Entries that cannot be taken are named up to this number.
constexpr int mostRefused = 100;

std::string_view folderOf(const ArchiveEntry& entry) {
    const std::string_view path(entry.path);
    const auto slash = path.rfind('/');
    return path.substr(0, slash == std::string_view::npos ? 0 : slash);
}

bool canHaveHardLinks(const ArchiveFacts& facts) {
    return facts.formatFamily != ArchiveFamily::zip &&
           facts.formatFamily != ArchiveFamily::sevenZip && !facts.isRaw();
}

/// Whether the place, and not the file, is the reason why a file cannot have one more name there.
bool meansNoHardLinks(const PosixError& error) {
    return error.code == EPERM || error.code == EMLINK || error.code == EXDEV ||
           error.code == EOPNOTSUPP || error.code == ENOSYS || error.code == EINVAL;
}

} // namespace

ArchiveExtraction::ArchiveExtraction(const Surroundings& surroundings, const Extraction& what)
    : around_(surroundings),
      ledger_(surroundings.ledger),
      context_(surroundings.ledger.context()),
      what_(what),
      password_(what.password),
      index_(what.index),
      failuresBefore_(ledger_.failures()),
      selection_(what.selection),
      placing_(
          ledger_, [this](const FileStatus& there) { return objection(there); },
          [this] { completer_.finish(); },
          [this](const FileIdentity& folder) {
              if (folders_)
                  folders_->forget(folder);
          }) {}

bool ArchiveExtraction::goesOn() {
    isStopped_ = isStopped_ || context_.checkpoint() == Checkpoint::stop;
    return !isStopped_;
}

bool ArchiveExtraction::run() {
    if (!prepare())
        return !isStopped_;
    stream_ = std::make_unique<UnlockingStream>(
        around_.archives, context_, around_.askPassword,
        ArchiveRequest{.url = what_.archive,
                       .password = password_,
                       .charset = index_ ? index_->charset() : std::string(),
                       .wanted = wanted()});
    auto first = stream_->next();
    if (first && !isAsSeen()) {
        ledger_.failed("Archiv " + quoted(what_.archive.lastComponent()) +
                       " se mezitím změnil, nic se z něj nerozbalilo.");
        return true;
    }
    takeEntries(std::move(first));
    completeAll();
    takeWhatWaits();
    completeAll();
    if (folders_)
        folders_->finish();
    return !isStopped_;
}

bool ArchiveExtraction::prepare() {
    if (!index_) {
        UnlockingStream stream(
            around_.archives, context_, around_.askPassword,
            {.url = what_.archive, .password = password_, .wanted = std::vector<std::string>()});
        auto read = ArchiveIndex::read(stream, what_.archive);
        password_ = stream.password();
        // What comes before the damage can be taken all the same.
        if (!read && read.error().kind == ArchiveError::Case::damaged)
            return goesOn();
        if (!read) {
            fail(read.error());
            return false;
        }
        index_ = std::move(*read);
        ledger_.recount({}, selection_.totals(*index_));
    }
    if (index_->hasEncryptedEntries() && !index_->isZip()) {
        fail({ArchiveError::Case::unsupportedEncryption, index_->formatLabel()});
        return false;
    }
    linksOut_ = selection_.linksOut(*index_);
    for (const auto& path : selection_.missingIn(*index_))
        charge(path, [&] { ledger_.failed(quoted(path) + " v archivu není."); });
    return goesOn();
}

std::optional<std::vector<std::string>> ArchiveExtraction::wanted() const {
    auto paths = what_.selection;
    if (paths)
        for (const auto& link : linksOut_)
            paths->push_back(link.first);
    return paths;
}

bool ArchiveExtraction::isAsSeen() const {
    return !index_ || index_->facts().isOfSameFile(stream_->facts());
}

void ArchiveExtraction::completeAll() {
    completer_.finish();
    noticeFullDisk();
}

void ArchiveExtraction::noticeFullDisk() {
    if (!disk_.isFull() || std::exchange(isFullTold_, true))
        return;
    ledger_.failed("Na disku už není místo, zbytek archivu " +
                   quoted(what_.archive.lastComponent()) + " zůstal nerozbalený.");
    isOver_ = true;
}

void ArchiveExtraction::takeEntries(EntryStream::Result<std::optional<StreamEntry>> met) {
    while (met) {
        completer_.collect();
        const auto& entry = *met;
        if (!entry || !goesOn())
            return;
        charge(entry->entry.path, [&] { take(*entry); });
        noticeFullDisk();
        if (isStopped_ || isOver_)
            return;
        met = stream_->next();
    }
    fail(met.error());
}

void ArchiveExtraction::take(const StreamEntry& met) {
    const auto& entry = met.entry;
    const auto base = selection_.baseLength(entry.path);
    if (!base) {
        takeForLink(met);
        return;
    }
    if (met.isRefused || !isEntryPath(entry.path)) {
        refuse(entry);
        return;
    }
    if (isPassedOver(entry, *base))
        return;
    switch (entry.kind) {
    case Kind::file:
        if (met.isSpecial)
            ledger_.failed(sentenceOf(entry, "není to soubor ani složka."));
        else
            takeFile(met, *base);
        break;
    case Kind::directory:
        takeFolder(entry, *base);
        break;
    case Kind::hardlink:
        takeDataOfLink(entry);
        [[fallthrough]];
    case Kind::symlink:
        links_.push_back({entry, *base});
        break;
    }
}

void ArchiveExtraction::takeForLink(const StreamEntry& met) {
    const auto link = linksOut_.find(met.entry.path);
    if (link == linksOut_.end() || met.entry.kind != Kind::file || met.isSpecial || met.isRefused)
        return;
    auto asLink = met;
    asLink.entry.path = link->second.path;
    const auto base = selection_.baseLength(asLink.entry.path).value_or(0);
    if (isPassedOver(asLink.entry, base))
        return;
    ledger_.recount({}, {.bytes = asLink.entry.size, .files = 1});
    takeFile(asLink, base);
    completer_.finish();
    if (const auto file = written_.find(asLink.entry.path); file != written_.end())
        written_.insert_or_assign(met.entry.path, WrittenFile(file->second));
}

void ArchiveExtraction::refuse(const ArchiveEntry& entry) {
    if (++refused_ <= mostRefused)
        ledger_.failed("Položku " + quoted(entry.path) +
                       " nejde rozbalit: její cesta je příliš dlouhá, nebo vede mimo archiv.");
}

bool ArchiveExtraction::isPassedOver(const ArchiveEntry& entry, std::size_t base) {
    if (!folders_)
        return false;
    switch (folders_->nearest(folderOf(entry), base).state) {
    case ExtractionFolders::State::open:
        return false;
    case ExtractionFolders::State::skipped:
        // All below the folder is skipped as one.
        if (entry.kind == Kind::file) {
            ledger_.recount({.bytes = 0, .files = 1}, {});
            ledger_.accounted(entry.size);
        }
        return true;
    case ExtractionFolders::State::stopped:
        isStopped_ = true;
        return true;
    case ExtractionFolders::State::failed:
        break;
    }
    return true;
}

void ArchiveExtraction::takeFile(const StreamEntry& met, std::size_t base) {
    if (const auto first = firstData(met.entry)) {
        // The data of a file that has several names comes with the last of them there.
        const bool mayFollow = first->bytes.empty() && first->offset == 0 &&
                               stream_->facts().formatFamily == ArchiveFamily::cpio;
        if (mayFollow)
            empty_.insert_or_assign(met.entry.path, Later{met.entry, base});
        else
            writeFile(met, base, *first);
    }
}

std::optional<EntryStream::Block> ArchiveExtraction::firstData(const ArchiveEntry& entry) {
    const auto first = stream_->read();
    if (first)
        return *first;
    const auto& error = first.error();
    if (error.kind == ArchiveError::Case::cancelled ||
        error.kind == ArchiveError::Case::unsupportedEncryption) {
        fail(error);
        isOver_ = true;
    } else {
        ledger_.accounted(entry.size);
        ledger_.failed(sentenceOf(entry, error));
    }
    return std::nullopt;
}

void ArchiveExtraction::takeDataOfLink(const ArchiveEntry& entry) {
    const auto first = firstData(entry);
    const auto target = entry.linkTarget.value_or(std::string());
    const auto standIn = linksOut_.find(target);
    const auto file = empty_.find(standIn == linksOut_.end() ? target : standIn->second.path);
    if (!first || first->bytes.empty() || file == empty_.end())
        return;
    const auto later = file->second;
    empty_.erase(file);
    writeFile({.entry = later.entry}, later.base, *first);
}

void ArchiveExtraction::writeFile(const StreamEntry& met, std::size_t base,
                                  const EntryStream::Block& first) {
    const auto& entry = met.entry;
    auto* folder = folderFor(entry, base);
    if (folder == nullptr)
        return;
    const auto node = folder->node;
    context_.setCurrentName(nameOf(entry));
    EntryWriter writer(ledger_, disk_, completer_, *stream_, met, first);
    if (!writer.isSmall())
        completer_.finish(); // what came before is told before
    const auto outcome =
        place(entry, node, [&](const FolderNode::Held& held, const std::string& name) {
            auto filled = writer.write(*node, held, name);
            if (!filled)
                return filled.error();
            const WrittenFile file{node, name, filled->work.file.identity()};
            return complete(entry, file, *std::move(filled));
        });
    if (outcome == Outcome::skipped)
        ledger_.skipped(entry.size);
}

Made ArchiveExtraction::complete(const ArchiveEntry& entry, const WrittenFile& file,
                                 EntryWriter::Filled filled) {
    auto onEnd = [this, entry, file, missing = filled.missing](const FileCompleter::End& end) {
        ledger_.accounted(missing);
        charge(entry.path, [&] { account(entry, file, end); });
    };
    if (filled.mayWait) {
        completer_.completeLater(std::move(filled.work), std::move(onEnd));
        return Made::done;
    }
    const auto end = FileCompleter::complete(std::move(filled.work));
    onEnd(end);
    return end.failure ? Made::failed : Made::done;
}

void ArchiveExtraction::account(const ArchiveEntry& entry, const WrittenFile& file,
                                const FileCompleter::End& end) {
    const auto url = file.folder->url().appending(file.name);
    if (end.leftover)
        EntryWriter::tellLeftover(ledger_, url, *end.leftover);
    if (end.failure) {
        // Once the disk is full, one sentence says so of all others.
        const bool isOneOfTheRest = disk_.isFull() && FullDisk::isReason(*end.failure);
        disk_.failed(*end.failure);
        if (!isOneOfTheRest)
            ledger_.failed(quoted(nameOf(entry)) + ": " + end.failure->reason());
        return;
    }
    disk_.tookOne();
    ledger_.filesDone(1);
    context_.addStep(UndoSteps::Created{url});
    if (canHaveHardLinks(stream_->facts()))
        written_.insert_or_assign(entry.path, file);
}

void ArchiveExtraction::takeFolder(const ArchiveEntry& entry, std::size_t base) {
    auto* all = folders();
    if (all == nullptr)
        return;
    auto& folder = all->enter(entry.path, base);
    if (folder.state == ExtractionFolders::State::stopped)
        isStopped_ = true;
    if (folder.isNew)
        folder.look = entry;
}

void ArchiveExtraction::takeWhatWaits() {
    for (const auto& empty : empty_) {
        if (!goesOn() || isOver_ || disk_.isFull())
            return;
        charge(empty.first, [this, &file = empty.second] {
            if (!isPassedOver(file.entry, file.base))
                writeFile({.entry = file.entry}, file.base, {});
        });
    }
    for (const auto& link : links_) {
        if (!goesOn() || isOver_ || disk_.isFull())
            return;
        charge(link.entry.path, [&] {
            if (!isTaken(link.entry) && !isPassedOver(link.entry, link.base))
                takeLink(link.entry, link.base);
        });
    }
}

bool ArchiveExtraction::isTaken(const ArchiveEntry& link) const {
    const auto first = linksOut_.find(link.linkTarget.value_or(std::string()));
    return first != linksOut_.end() && first->second.path == link.path &&
           written_.contains(link.path);
}

void ArchiveExtraction::takeLink(const ArchiveEntry& entry, std::size_t base) {
    ledger_.recount({}, {.bytes = 0, .files = 1});
    const auto* folder = folderFor(entry, base);
    if (folder == nullptr)
        return;
    const auto node = folder->node;
    context_.setCurrentName(nameOf(entry));
    const auto outcome =
        place(entry, node, [&](const FolderNode::Held& held, const std::string& name) {
            return makeLink(entry, node, *held, name);
        });
    if (outcome == Outcome::skipped)
        ledger_.skipped(0);
}

NamePlacing::Made ArchiveExtraction::makeLink(const ArchiveEntry& entry,
                                              const FolderNode::Pointer& folder,
                                              const OpenFolder& held, const std::string& name) {
    OpenFolder::Result<void> made;
    if (entry.kind == Kind::symlink) {
        made =
            fennik::makeLink(held, name, entry.linkTarget.value_or(std::string()), entry.modified);
    } else {
        const auto file = written_.find(entry.linkTarget.value_or(std::string()));
        if (file == written_.end()) {
            ledger_.failed(sentenceOf(entry, "je to další jméno položky, která se nerozbalila."));
            return Made::failed;
        }
        made = makeHardLink(file->second, held, name);
    }
    if (!made && made.error().code == EEXIST)
        return Made::taken;
    if (!made && made.error().code == ECANCELED)
        return Made::stopped;
    if (!made) {
        disk_.failed(made.error());
        ledger_.failed(sentenceOf(entry, made.error().reason()));
        return Made::failed;
    }
    ledger_.filesDone(1);
    context_.addStep(UndoSteps::Created{folder->url().appending(name)});
    if (const auto status = held.status(name); status && canHaveHardLinks(stream_->facts()))
        written_.insert_or_assign(entry.path, WrittenFile{folder, name, status->identity()});
    return Made::done;
}

OpenFolder::Result<void> ArchiveExtraction::makeHardLink(const WrittenFile& file,
                                                         const OpenFolder& held,
                                                         const std::string& name) {
    const auto from = file.folder->open();
    if (!from)
        return std::unexpected(from.error());
    auto named = addName(**from, file.name, file.identity, held, name);
    if (named || !meansNoHardLinks(named.error()))
        return named;
    const auto copied =
        copyItem(**from, file.name, FileType::regular, held, name, Cloning::allowed,
                 [this](std::int64_t) { return goesOn() ? CopyStep::goOn : CopyStep::stop; });
    if (!copied)
        return std::unexpected(isStopped_ ? PosixError{ECANCELED} : copied.error().error);
    return {};
}

ExtractionFolders::Folder* ArchiveExtraction::folderFor(const ArchiveEntry& entry,
                                                        std::size_t base) {
    auto* all = folders();
    if (all == nullptr)
        return nullptr;
    auto& folder = all->enter(folderOf(entry), base);
    return isPassedOver(entry, base) ? nullptr : &folder;
}

NamePlacing::Outcome ArchiveExtraction::place(const ArchiveEntry& entry,
                                              const FolderNode::Pointer& folder,
                                              const NamePlacing::Make& make) {
    const auto outcome = placing_
                             .place({.folder = folder,
                                     .name = std::string(nameOf(entry)),
                                     .newcomer = [&] { return newcomer(entry); }},
                                    make)
                             .outcome;
    isStopped_ = isStopped_ || outcome == Outcome::stopped;
    return outcome;
}

NameClash::Newcomer ArchiveExtraction::newcomer(const ArchiveEntry& entry) const {
    const bool isFolder = entry.kind == Kind::directory;
    const auto form = isFolder ? FileUrl::Form::directory : FileUrl::Form::file;
    return {.url = what_.archive.appending(entry.path, form),
            .isFolder = isFolder,
            .size = entry.size,
            .modified = entry.modified};
}

NameClash::Newcomer ArchiveExtraction::newcomer(const std::string& folder) const {
    const auto entry = index_ ? index_->find(folder) : std::nullopt;
    return newcomer({.path = folder,
                     .kind = Kind::directory,
                     .modified = entry ? entry->modified : Date::distantPast()});
}

std::optional<std::string> ArchiveExtraction::objection(const FileStatus& there) const {
    const auto archive = systemFileSystem().status(what_.archive.path(), FollowLinks::yes);
    if (archive && archive->identity() == there.identity())
        return "právě se rozbaluje.";
    if (there.type != FileType::directory)
        return std::nullopt;
    const auto folder = FolderNode::at(around_.folders, what_.archive.parent());
    if (folder && (*folder)->isInOrIs(there.identity()))
        return "obsahuje rozbalovaný archiv.";
    return std::nullopt;
}

ExtractionFolders* ArchiveExtraction::folders() {
    if (!folders_ && !isOver_)
        isOver_ = !makeTop();
    return isOver_ ? nullptr : folders_.get();
}

bool ArchiveExtraction::makeTop() {
    const auto way = around_.targets.wayTo(what_.target);
    if (!way) {
        ledger_.failed("Složku " + quoted(what_.target.lastComponent()) +
                       " nejde otevřít: " + way.error().reason());
        return false;
    }
    auto target = around_.targets.complete(*way, ledger_);
    if (!target)
        return false;
    folders_ = std::make_unique<ExtractionFolders>(
        ledger_, disk_, placing_, index_.get(), std::move(target),
        [this](const std::string& folder) { return newcomer(folder); });
    const auto own = ownFolderName();
    return !own || folders_->beginIn(*own);
}

std::optional<std::string> ArchiveExtraction::ownFolderName() const {
    if (!what_.ownFolder || stream_->facts().isRaw())
        return std::nullopt;
    std::string whole(what_.archive.lastComponent());
    const auto extension = ArchiveSupport::archiveExtension(whole);
    auto name = extension ? whole.substr(0, whole.size() - extension->size() - 1) : whole;
    if (name == "." || name == "..")
        return whole;
    if (!index_ || what_.selection)
        return name;
    const auto tops = index_->children({});
    const bool hasIt = tops.size() == 1 && tops.front() == name;
    const auto top = hasIt ? index_->find(name) : std::nullopt;
    return top && top->kind == Kind::directory ? std::nullopt : std::optional(name);
}

template <class Work>
void ArchiveExtraction::charge(std::string_view path, Work work) {
    // What fails while the work waits for others' ends is charged to those.
    const auto before = ledger_.failures() - charged_;
    work();
    const auto failures = ledger_.failures() - charged_ - before;
    const auto base = selection_.baseLength(path);
    if (failures == 0 || !base)
        return;
    failedPaths_.emplace(path.substr(0, path.find('/', *base)));
    charged_ += failures;
}

std::vector<PairOutcome> ArchiveExtraction::outcomes() const {
    std::vector<PairOutcome> outcomes;
    if (!what_.selection)
        return {ledger_.outcomes()[ledger_.pair()]};
    // What failed for no single entry may have hit them all.
    const bool isWhole = ledger_.failures() == failuresBefore_ + charged_;
    const auto others = isStopped_ ? PairOutcome::pending
                        : isWhole  ? PairOutcome::done
                                   : PairOutcome::failed;
    for (const auto& path : *what_.selection)
        outcomes.push_back(failedPaths_.contains(path) ? PairOutcome::failed : others);
    return outcomes;
}

void ArchiveExtraction::fail(const ArchiveError& error) {
    if (error.kind == ArchiveError::Case::cancelled) {
        isStopped_ = true;
        return;
    }
    const bool isOneOfMany = ledger_.outcomes().size() > 1;
    ledger_.failed((isOneOfMany ? quoted(what_.archive.lastComponent()) + ": " : std::string()) +
                   error.message());
}

} // namespace fennik
