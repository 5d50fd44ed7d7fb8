#include "core/operations/NameClash.h"

#include "core/base/CzechText.h"
#include "core/operations/Relocation.h"

#include <cerrno>
#include <expected>
#include <utility>

namespace fennik::NameClash {

namespace {

Settled displace(TransferLedger& ledger, const Occupant& occupant, const Objection& objection) {
    const auto refuse = [&](const std::string& reason) {
        ledger.failed(quoted(occupant.name) + " nejde přepsat: " + reason);
        return Settled{Answer::failed};
    };
    if (const auto reason = objection(occupant.status))
        return refuse(*reason);
    const auto folder = occupant.folder->open();
    if (!folder)
        return refuse(folder.error().reason());
    // The answer may have taken its time.
    const auto now = (*folder)->status(occupant.name);
    if (!now)
        return {Answer::free};
    if (now->identity() != occupant.status.identity())
        return {Answer::lookAgain};
    // The trash looks the path up anew, and must not find anything else there.
    const auto url = occupant.folder->url().appending(occupant.name);
    const auto found = systemFileSystem().status(url.path(), FollowLinks::no);
    if (!found)
        return refuse(found.error().reason());
    if (found->identity() != occupant.status.identity())
        return refuse(PosixError{ESTALE}.reason());
    auto place = ledger.context().trash().trash(url);
    if (!place)
        return refuse(place.error());
    ledger.context().addStep(UndoSteps::Trashed{.original = url, .inTrash = *place});
    return {Answer::free, std::move(*place)};
}

std::expected<void, std::string> moveBack(const Occupant& occupant, const FileUrl& displaced) {
    const auto trash = OpenFolder::open(displaced.parent().path(), FollowLinks::yes);
    if (!trash)
        return std::unexpected(trash.error().reason());
    const auto folder = occupant.folder->open();
    if (!folder)
        return std::unexpected(folder.error().reason());
    const auto renamed =
        renameExclusively(*trash, std::string(displaced.lastComponent()), **folder, occupant.name);
    if (renamed)
        return {};
    // By its path it can only go where that still leads to the folder.
    const auto& url = occupant.folder->url();
    const auto there = systemFileSystem().status(url.path(), FollowLinks::yes);
    if (renamed.error().code != EXDEV || !there || there->identity() != occupant.folder->identity())
        return std::unexpected(renamed.error().reason());
    return Relocation::move(displaced, url.appending(occupant.name));
}

} // namespace

Settled settle(TransferLedger& ledger, const Newcomer& newcomer, const Occupant& occupant,
               const Objection& objection) {
    const auto& status = occupant.status;
    const bool isFolder = status.type == FileType::directory;
    const auto form = isFolder ? FileUrl::Form::directory : FileUrl::Form::file;
    const auto choice = ledger.context().answer({
        .source = newcomer.url,
        .destination = occupant.folder->url().appending(occupant.name, form),
        .sourceSize = newcomer.size,
        .sourceDate = newcomer.modified,
        .destinationSize = isFolder ? 0 : status.size,
        .destinationDate = status.modified,
        .typeMismatch = newcomer.isFolder != isFolder,
    });
    switch (choice) {
    case ConflictChoice::overwriteOlder:
        if (status.modified >= newcomer.modified)
            break;
        return displace(ledger, occupant, objection);
    case ConflictChoice::overwrite:
        return displace(ledger, occupant, objection);
    case ConflictChoice::rename:
        return {Answer::number};
    case ConflictChoice::cancel:
        ledger.context().cancelNow();
        return {Answer::cancelled};
    case ConflictChoice::skip:
        break;
    }
    return {Answer::skip};
}

void bringBack(TransferLedger& ledger, const Occupant& occupant, const FileUrl& displaced) {
    if (const auto back = moveBack(occupant, displaced); !back) {
        ledger.failed(quoted(occupant.name) + " zůstává v Koši: " + back.error());
        return;
    }
    ledger.context().trash().forget(displaced);
    ledger.context().dropLastStep();
}

} // namespace fennik::NameClash
