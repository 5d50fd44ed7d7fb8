#include "core/operations/TransferWalk.h"

#include "core/base/CzechText.h"
#include "core/operations/NameClash.h"
#include "core/operations/UniqueName.h"

#include <cerrno>
#include <utility>

namespace fennik {

namespace {

using Extent = PairCount::Extent;
using Visit = SourceRemoval::Visit;

/// How often a name may turn out to be taken although it seemed free, before that is a failure.
constexpr int mostSurprises = 100;
/// Nobody else has any business in a folder that is being filled.
constexpr std::uint16_t modeWhileFilling = 0700;

constexpr TransferTotals one{.bytes = 0, .files = 1};

std::int64_t shownSize(const FileStatus& status) {
    return status.type == FileType::directory ? 0 : status.size;
}

FileUrl::Form formOf(const FileStatus& status) {
    return status.type == FileType::directory ? FileUrl::Form::directory : FileUrl::Form::file;
}

/// Both are one item that can be reached in two ways, and no hard links of a file.
bool isSameItem(const FileStatus& source, const FileStatus& target) {
    return source.identity() == target.identity() &&
           (source.type == FileType::directory || source.names == 1);
}

} // namespace

bool TransferWalk::goesOn() {
    isStopped_ = isStopped_ || context_.checkpoint() == Checkpoint::stop;
    return !isStopped_;
}

void TransferWalk::run(Item item, const FileStatus& status) {
    transfer({.item = std::move(item),
              .name = {},
              .status = status,
              .looksFirst = true,
              .mayRename = isMove(),
              .extent = ledger_.extent()});
    while (!levels_.empty()) {
        if (!goesOn())
            leave(Visit::brokenOff);
        else if (levels_.back().next == levels_.back().entries.size())
            leave(Visit::complete);
        else
            transferNext();
    }
}

void TransferWalk::transferNext() {
    auto& level = levels_.back();
    const auto& entry = level.entries[level.next++];
    transfer({.item = {.from = level.source,
                       .name = entry.name,
                       .type = entry.type,
                       .to = level.target,
                       .newName = entry.name,
                       .clash = level.folder.clash == Clash::fail ? Clash::fail : Clash::ask},
              .name = {},
              .status = {},
              .looksFirst = !level.isNew,
              .mayRename = level.mayRename,
              .extent = level.extent});
}

void TransferWalk::transfer(Attempt attempt) {
    attempt.name = attempt.item.newName;
    for (int surprises = 0; surprises < mostSurprises; ++surprises) {
        if (surprises > 0 && !goesOn())
            return;
        if (attempt.looksFirst && attempt.item.clash == Clash::ask) {
            const auto found = answer(attempt);
            if (found == Answer::finished)
                return;
            if (found == Answer::lookAgain)
                continue;
        }
        switch (place(attempt)) {
        case Placing::done:
            return;
        case Placing::failed:
            bringBack(attempt);
            return;
        case Placing::taken:
            // What was displaced stays in the trash, as its place belongs to another one now.
            attempt.displaced.reset();
            attempt.looksFirst = true;
        }
        if (attempt.item.clash == Clash::fail)
            break;
    }
    ledger_.failed(quoted(attempt.item.name) + ": " + PosixError{EEXIST}.reason());
}

TransferWalk::Answer TransferWalk::answer(Attempt& attempt) {
    const auto to = attempt.item.to->open();
    const auto target = to ? (*to)->status(attempt.name) : std::unexpected(to.error());
    // Creating it will tell the reason, if nothing is to be seen for another one than that.
    if (!target)
        return Answer::place;
    if (!attempt.status) {
        const auto from = attempt.item.from->open();
        const auto source =
            from ? (*from)->status(attempt.item.name) : std::unexpected(from.error());
        if (!source) {
            failReading(attempt.item.name, source.error());
            return Answer::finished;
        }
        attempt.status = *source;
    }
    const auto& source = *attempt.status;
    if (isSameItem(source, *target)) {
        failInsideItself(attempt.item.name);
        return Answer::finished;
    }
    if (source.type == FileType::directory && target->type == FileType::directory) {
        merge(attempt);
        return Answer::finished;
    }
    return ask(attempt, source, *target);
}

TransferWalk::Answer TransferWalk::ask(Attempt& attempt, const FileStatus& source,
                                       const FileStatus& target) {
    const auto& item = attempt.item;
    const NameClash::Newcomer newcomer{
        .url = item.from->url().appending(item.name, formOf(source)),
        .isFolder = source.type == FileType::directory,
        .size = shownSize(source),
        .modified = source.modified,
    };
    const auto objection = [&item](const FileStatus& there) -> std::optional<std::string> {
        if (there.type == FileType::directory && item.from->isInOrIs(there.identity()))
            return "obsahuje zdroj.";
        return std::nullopt;
    };
    auto settled = NameClash::settle(ledger_, newcomer, {item.to, attempt.name, target}, objection);
    switch (settled.answer) {
    case NameClash::Answer::free:
        attempt.displaced = std::move(settled.displaced);
        return Answer::place;
    case NameClash::Answer::lookAgain:
        return Answer::lookAgain;
    case NameClash::Answer::number:
        attempt.item.clash = Clash::number;
        return Answer::place;
    case NameClash::Answer::cancelled:
        isStopped_ = true;
        break;
    case NameClash::Answer::skip:
        skip(attempt, source);
        break;
    case NameClash::Answer::failed:
        break;
    }
    return Answer::finished;
}

void TransferWalk::skip(const Attempt& attempt, const FileStatus& source) {
    const bool isFolder = source.type == FileType::directory;
    if (!isFolder && attempt.extent == Extent::asOne)
        ledger_.recount(one, {.bytes = bytesOf(source), .files = 1});
    if (isFolder && attempt.extent == Extent::inFull && ledger_.isCounted()) {
        // All in it is skipped as one.
        const auto all = countTree(attempt.item.from, attempt.item.name, source, context_);
        ledger_.recount({.bytes = 0, .files = all.files}, one);
    }
    ledger_.skipped(bytesOf(source));
}

void TransferWalk::merge(const Attempt& attempt) {
    auto level = read(attempt);
    if (!level)
        return;
    const auto target = FolderNode::below(attempt.item.to, attempt.name);
    if (!target) {
        ledger_.failed("Složku " + quoted(attempt.name) +
                       " nejde přečíst: " + target.error().reason());
        return;
    }
    level->target = *target;
    if (attempt.extent == Extent::asOne)
        ledger_.recount(one,
                        {.bytes = 0, .files = static_cast<std::int64_t>(level->entries.size())});
    levels_.push_back(std::move(*level));
}

TransferWalk::Placing TransferWalk::place(Attempt& attempt) {
    if (attempt.item.clash == Clash::number) {
        const auto to = attempt.item.to->open();
        if (to)
            attempt.name = UniqueName::free(attempt.item.newName, **to);
    }
    if (attempt.mayRename) {
        if (const auto renamed = rename(attempt))
            return *renamed;
    }
    return attempt.item.type == FileType::directory ? enterNewFolder(attempt) : copyFile(attempt);
}

std::optional<TransferWalk::Placing> TransferWalk::rename(Attempt& attempt) {
    const auto& item = attempt.item;
    const auto from = item.from->open();
    const auto to = item.to->open();
    if (!from || !to)
        return std::nullopt; // copying tells the reason
    const auto renamed = renameExclusively(**from, item.name, **to, attempt.name);
    if (!renamed) {
        if (renamed.error().code == EEXIST)
            return Placing::taken;
        if (renamed.error().code == EXDEV) {
            attempt.mayRename = false;
            if (!levels_.empty() && item.type != FileType::directory)
                levels_.back().mayRename = false; // nor may the others there
        }
        return std::nullopt;
    }
    auto moved = one;
    if (attempt.extent == Extent::inFull) {
        const auto status =
            attempt.status ? *attempt.status : (*to)->status(attempt.name).value_or(FileStatus{});
        moved = countTree(item.to, attempt.name, status, context_);
    }
    ledger_.accounted(moved.bytes);
    ledger_.filesDone(moved.files);
    context_.addStep(UndoSteps::Moved{.from = item.from->url().appending(item.name),
                                      .to = item.to->url().appending(attempt.name)});
    return Placing::done;
}

TransferWalk::Placing TransferWalk::copyFile(const Attempt& attempt) {
    const auto& item = attempt.item;
    const auto from = item.from->open();
    if (!from) {
        failReading(item.name, from.error());
        return Placing::failed;
    }
    const auto to = item.to->open();
    if (!to) {
        ledger_.failed(quoted(item.name) + ": " + to.error().reason());
        return Placing::failed;
    }
    if (attempt.extent == Extent::asOne && ledger_.isCounted()) {
        const auto status = (*from)->status(item.name);
        if (status)
            ledger_.recount(one, countTree(item.from, item.name, *status, context_));
    }
    context_.setCurrentName(item.name);
    std::int64_t written = 0;
    const auto progress = [this, &written](std::int64_t bytes) {
        written += bytes;
        if (bytes > 0)
            ledger_.written(bytes);
        return context_.checkpoint() == Checkpoint::goOn ? CopyStep::goOn : CopyStep::stop;
    };
    const auto cloning = context_.isCapped() ? Cloning::forbidden : Cloning::allowed;
    const auto copied =
        copyItem(**from, item.name, item.type, **to, attempt.name, cloning, progress);
    if (!copied)
        return failCopy(attempt, **from, copied.error(), written);
    ledger_.accounted(bytesOf(copied->source) - written);
    ledger_.filesDone(1);
    if (isMove())
        removal_.addFile({.from = item.from,
                          .name = item.name,
                          .source = copied->source,
                          .to = item.to,
                          .newName = attempt.name,
                          .copy = copied->copy},
                         *to);
    else
        context_.addStep(UndoSteps::Created{item.to->url().appending(attempt.name)});
    return Placing::done;
}

TransferWalk::Placing TransferWalk::failCopy(const Attempt& attempt, const OpenFolder& from,
                                             const CopyFailure& failure, std::int64_t written) {
    if (failure.kind == CopyFailure::Kind::exists)
        return Placing::taken;
    if (failure.remains) {
        context_.addStep(UndoSteps::Created{attempt.item.to->url().appending(attempt.name)});
        ledger_.failed("Rozpracovaný soubor " + quoted(attempt.name) +
                       " nejde odstranit: " + failure.remains->reason());
    }
    if (failure.kind == CopyFailure::Kind::stopped || context_.isCancelled()) {
        isStopped_ = true;
        return Placing::failed;
    }
    const auto& name = attempt.item.name;
    const auto source = from.status(name);
    if (source)
        ledger_.accounted(bytesOf(*source) - written);
    if (!source)
        failReading(name, source.error());
    else if (failure.kind == CopyFailure::Kind::notCopyable)
        ledger_.failed(quoted(name) + " nejde kopírovat: není to soubor ani složka.");
    else
        ledger_.failed(quoted(name) + ": " + failure.error.reason());
    return Placing::failed;
}

TransferWalk::Placing TransferWalk::enterNewFolder(const Attempt& attempt) {
    const auto& item = attempt.item;
    auto level = read(attempt);
    if (!level)
        return Placing::failed;
    const auto fail = [&](const PosixError& error) {
        ledger_.failed("Složku " + quoted(attempt.name) + " nejde vytvořit: " + error.reason());
        return Placing::failed;
    };
    const auto to = item.to->open();
    if (!to)
        return fail(to.error());
    if (const auto made = (*to)->makeFolder(attempt.name, modeWhileFilling); !made)
        return made.error().code == EEXIST ? Placing::taken : fail(made.error());
    const auto target = FolderNode::below(item.to, attempt.name);
    if (!target) {
        // It is empty, and so is whatever else it may be that is removed.
        static_cast<void>((*to)->removeFolder(attempt.name));
        return fail(target.error());
    }
    context_.addStep(UndoSteps::Created{(*target)->url()});
    if (attempt.extent == Extent::asOne && ledger_.isCounted()) {
        FileStatus folder;
        folder.type = FileType::directory;
        ledger_.recount(one, countTree(item.from, item.name, folder, context_));
        level->extent = Extent::inFull;
    }
    level->target = *target;
    level->isNew = true;
    level->mayRename = attempt.mayRename;
    levels_.push_back(std::move(*level));
    return Placing::done;
}

std::optional<TransferWalk::Level> TransferWalk::read(const Attempt& attempt) {
    const auto& item = attempt.item;
    const auto source = FolderNode::below(item.from, item.name);
    const auto held = source ? (*source)->open() : std::unexpected(source.error());
    auto entries = held ? (*held)->entries() : std::unexpected(held.error());
    if (!entries) {
        ledger_.failed("Složku " + quoted(item.name) +
                       " nejde přečíst: " + entries.error().reason());
        return std::nullopt;
    }
    // Mounted folders can lead into the tree again that is being read, and endlessly so.
    if (item.to->isInOrIs((*source)->identity())) {
        failInsideItself(item.name);
        return std::nullopt;
    }
    return Level{.folder = item,
                 .source = *source,
                 .target = {},
                 .entries = std::move(*entries),
                 .next = 0,
                 .isNew = false,
                 .mayRename = isMove(),
                 .extent = attempt.extent};
}

void TransferWalk::leave(Visit visit) {
    auto level = std::move(levels_.back());
    levels_.pop_back();
    if (level.isNew) {
        const auto source = level.source->open();
        const auto target = level.target->open();
        // A folder without these is complete all the same.
        if (source && target)
            static_cast<void>(copyFolderMetadata(**source, **target));
    }
    if (!isMove())
        return;
    FileStatus folder;
    folder.type = FileType::directory;
    folder.device = level.source->identity().device;
    removal_.addFolder({.from = level.folder.from,
                        .name = level.folder.name,
                        .source = folder,
                        .to = level.folder.to,
                        .newName = std::string(level.target->url().lastComponent()),
                        .copy = {}},
                       visit);
}

void TransferWalk::bringBack(const Attempt& attempt) {
    if (attempt.displaced)
        NameClash::bringBack(ledger_, {attempt.item.to, attempt.name, {}}, *attempt.displaced);
}

void TransferWalk::failReading(const std::string& name, const PosixError& error) {
    ledger_.failed(quoted(name) + " nejde přečíst: " + error.reason());
}

void TransferWalk::failInsideItself(const std::string& name) {
    ledger_.failed(quoted(name) + (isMove() ? " nejde přesunout do sebe sama."
                                            : " nejde kopírovat do sebe sama."));
}

} // namespace fennik
