#include "app/model/ArchiveAccess.h"

#include "app/model/ArchivePaths.h"
#include "core/archives/ArchiveSupport.h"
#include "core/base/CzechText.h"
#include "core/listing/Format.h"
#include "core/operations/DirectContext.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace fennik::app {

namespace {

using Failure = std::unexpected<std::string>;

/// An empty folder has nothing that would have to go anywhere.
class NoTrash final : public TrashProvider {
public:
    std::expected<FileUrl, std::string> trash(const FileUrl&) const override {
        return std::unexpected(std::string("dočasná složka nemá Koš."));
    }
    void forget(const FileUrl&) const override {}
};

/// Archives whose reading ends with the flag too.
class EndingArchives final : public ArchiveOpener {
public:
    EndingArchives(const ArchiveOpener& archives, std::shared_ptr<const CancelFlag> flag)
        : archives_(archives), flag_(std::move(flag)) {}
    EntryStream::Result<std::unique_ptr<EntryStream>> open(const ArchiveRequest& request,
                                                           IsCancelled isCancelled) const override {
        return archives_.open(request, [flag = flag_, isCancelled = std::move(isCancelled)] {
            return flag->isSet() || isCancelled();
        });
    }

private:
    const ArchiveOpener& archives_;
    std::shared_ptr<const CancelFlag> flag_;
};

std::string tooLarge(std::string_view name, std::int64_t mostBytes) {
    return quoted(name) + " je na otevření přímo z archivu příliš velký soubor, jde to do " +
           Format::bytes(mostBytes) + ". Nejdřív ho rozbalte.";
}

std::string notTaken(std::string_view name, const std::string& reason) {
    return quoted(name) + " nejde z archivu vyjmout: " + reason;
}

/// The path of the archive inside the one that holds it.
std::string entryOf(const ArchiveBrowse& browse) {
    return browse.place.path().substr(browse.outer->place.path().size() + 1);
}

/// Whether the archive's file is still the one that was read.
bool isCurrent(const FileSystem& files, const ArchiveBrowse& browse) {
    const auto status = files.status(browse.index->url().path(), FollowLinks::yes);
    const auto& facts = browse.index->facts();
    return status && status->size == facts.fileSize && status->modified == facts.fileModified;
}

ArchiveAccess::Result<ArchiveAccess::Found> found(ArchiveAccess::Result<ArchiveBrowse> browse) {
    if (!browse)
        return Failure(browse.error());
    return ArchiveAccess::Found{.browse = std::move(*browse)};
}

} // namespace

FileUrl ArchiveWish::location() const {
    return what == What::enter ? browse.place.appending(entry) : browse.location();
}

ArchiveAccess::ArchiveAccess(PanelServices services, AskPassword askPassword,
                             std::shared_ptr<const CancelFlag> cancelled)
    : services_(std::move(services)),
      askPassword_(std::move(askPassword)),
      cancelled_(std::move(cancelled)) {}

ArchiveAccess::Result<ArchiveAccess::Found> ArchiveAccess::find(ArchiveWish wish) const {
    auto& browse = wish.browse;
    switch (wish.what) {
    case ArchiveWish::What::show:
        return Found{.browse = show(std::move(browse))};
    case ArchiveWish::What::enter:
        return enter(std::move(browse), wish.entry, {});
    case ArchiveWish::What::read:
        break;
    }
    if (const auto outer = browse.outer) {
        const auto entry = entryOf(browse);
        return enter(*outer, entry, std::move(browse));
    }
    const auto file = browse.place;
    return found(read(file, std::move(browse), Asking::allowed));
}

ArchiveAccess::Result<ArchiveBrowse> ArchiveAccess::read(const FileUrl& file, ArchiveBrowse wanted,
                                                         Asking asking) const {
    const auto isCancelled = [flag = cancelled_] { return flag->isSet(); };
    for (;;) {
        const ArchiveRequest request{.url = file,
                                     .password = wanted.password.value_or(""),
                                     .wanted = std::vector<std::string>()};
        auto stream = services_.archives.open(request, isCancelled);
        EntryStream::Result<std::shared_ptr<const ArchiveIndex>> index =
            stream ? ArchiveIndex::read(**stream, file) : std::unexpected(stream.error());
        if (index) {
            wanted.index = std::move(*index);
            wanted.inner = ArchivePaths::nearestFolder(*wanted.index, wanted.inner);
            return wanted;
        }
        const auto& error = index.error();
        if (!error.isAboutPassword())
            return Failure(error.message());
        wanted.password = asking == Asking::allowed ? askPassword_(file, error) : std::nullopt;
        if (!wanted.password)
            return Failure("");
    }
}

ArchiveBrowse ArchiveAccess::show(ArchiveBrowse known) const {
    if (isCurrent(services_.files, known))
        return known;
    // What cannot be read any more, or is still being written, stays as it was read. Nobody expects
    // to be asked about it.
    const auto anew = read(known.index->url(), known, Asking::forbidden);
    return anew ? *anew : known;
}

ArchiveAccess::Result<ArchiveAccess::Found>
ArchiveAccess::enter(ArchiveBrowse holder, const std::string& entry, ArchiveBrowse wanted) const {
    const auto target = ArchivePaths::resolved(*holder.index, entry);
    if (!target || target->empty())
        return Failure(quoted(ArchivePaths::name(entry)) +
                       " nejde otevřít: cíl odkazu v archivu není.");
    auto file = takeOut(holder, *target);
    if (!file)
        return Failure(file.error());
    if (!ArchiveSupport::archiveExtension(file->url.lastComponent()))
        return Found{.file = std::move(*file)};
    wanted.place = holder.place.appending(*target);
    wanted.outer = std::make_shared<const ArchiveBrowse>(std::move(holder));
    wanted.copy = file->place;
    return found(read(file->url, std::move(wanted), Asking::allowed));
}

ArchiveAccess::Result<TakenFile> ArchiveAccess::takeOut(ArchiveBrowse& holder,
                                                        const std::string& entry) const {
    const auto name = ArchivePaths::name(entry);
    const auto size = holder.index->find(entry)->size;
    auto& places = services_.temporaryPlaces;
    if (size > places.mostBytes())
        return Failure(tooLarge(name, places.mostBytes()));
    const auto place = places.make();
    if (!place)
        return Failure(notTaken(name, place.error().reason()));
    const auto& folder = (*place)->folder();
    if (const auto space = services_.files.freeSpace(folder.path()); space && size > *space)
        return Failure("Na otevření " + quoted(name) + " je na disku málo místa: potřeba " +
                       Format::bytes(size) + ", volno " + Format::bytes(*space) + ".");

    const NoTrash trash;
    std::int64_t bytes = 0;
    DirectContext context(TransferKind::extract, trash, {}, [&](std::int64_t count) {
        bytes += count;
        if (bytes > places.mostBytes() || cancelled_->isSet())
            context.cancelNow();
    });
    const EndingArchives archives(services_.archives, cancelled_);
    const auto ask = [&](const FileUrl& archive, const ArchiveError& reason) {
        holder.password = askPassword_(archive, reason);
        return holder.password;
    };
    ArchiveExtractor(archives, context, ask)
        .run({{.archive = holder.index->url(),
               .password = holder.password.value_or(""),
               .index = holder.index,
               .selection = std::vector{entry},
               .target = folder}});
    if (cancelled_->isSet())
        return Failure("");
    if (bytes > places.mostBytes())
        return Failure(tooLarge(name, places.mostBytes()));
    if (const auto errors = context.errors(); !errors.empty())
        return Failure(errors.front());
    std::error_code error;
    const std::filesystem::directory_iterator taken(folder.path(), error);
    // Nothing was taken, and nothing failed: the user has given no password.
    if (error || taken == std::filesystem::directory_iterator())
        return Failure("");
    std::filesystem::permissions(taken->path(), std::filesystem::perms::owner_read, error);
    return TakenFile{.url = FileUrl(taken->path().string()), .place = *place};
}

} // namespace fennik::app
