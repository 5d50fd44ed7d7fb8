#include "app/model/PreviewReading.h"

#include "app/model/ArchiveAccess.h"
#include "app/model/ArchiveListing.h"
#include "app/model/ArchivePaths.h"
#include "app/model/FileHead.h"
#include "core/archives/ArchiveSupport.h"
#include "core/base/CzechText.h"
#include "core/platform/RegularFile.h"

#include <cerrno>
#include <cstdint>
#include <utility>
#include <vector>

namespace fennik::app {

namespace {

using ShowHidden = FolderOpener::ShowHidden;

/// Of an entry that is taken out of an archive only to be looked at.
constexpr std::int64_t mostBytesOfEntry = std::int64_t(256) << 20;

PreviewNothing unreadable(const FileUrl& url, const std::string& reason) {
    return {quoted(url.lastComponent()) + " nejde přečíst: " + reason};
}

FileItems shownOf(const FileItems& items, ShowHidden showHidden, const FolderSizes& sizes) {
    std::vector<std::uint32_t> rows;
    rows.reserve(items.size());
    for (std::uint32_t row = 0; row < items.size(); ++row) {
        if (showHidden == ShowHidden::yes || !items.view(row).isHidden)
            rows.push_back(row);
    }
    return FileSorter::sort(items.reordered(std::move(rows)), {}, sizes);
}

/// What lies directly in a folder.
PreviewList listOf(const FileItems& items, ShowHidden showHidden, FolderSizes sizes) {
    PreviewList list{
        .items = shownOf(items, showHidden, sizes), .folderSizes = std::move(sizes), .folders = 0};
    for (std::size_t row = 0; row < list.items.size(); ++row) {
        const auto item = list.items.view(row);
        if (item.isFolderLike()) {
            ++*list.folders;
        } else {
            ++list.files;
            list.bytes += item.size;
        }
    }
    return list;
}

PreviewList listOf(const ArchiveBrowse& browse, ShowHidden showHidden) {
    auto listing = ArchiveListing::of(browse);
    auto list = listOf(listing.items, showHidden, std::move(listing.folderSizes));
    if (browse.inner.empty()) {
        list.folders.reset();
        list.files = browse.index->fileCount();
        list.bytes = browse.index->totalSize();
    }
    return list;
}

} // namespace

PreviewReading::PreviewReading(PanelServices services, const PreviewDecoder& decoder,
                               std::shared_ptr<const CancelFlag> cancelled)
    : services_(std::move(services)), decoder_(decoder), cancelled_(std::move(cancelled)) {}

PreviewContent PreviewReading::read(const PreviewSubject& subject) const {
    return subject.archive ? ofEntry(subject, *subject.archive)
                           : ofPath(subject.item.resolvedURL(), subject.showHidden);
}

PreviewContent PreviewReading::ofEntry(const PreviewSubject& subject, ArchiveBrowse browse) const {
    const auto path = ArchivePaths::child(browse.inner, subject.item.name);
    const auto target = ArchivePaths::resolved(*browse.index, path);
    if (!target)
        return unreadable(subject.item.url, "cíl odkazu v archivu není.");
    if (ArchivePaths::isFolder(*browse.index, *target)) {
        browse.inner = *target;
        return listOf(browse, subject.showHidden);
    }
    const auto noPassword = [](const FileUrl&, const ArchiveError&) { return std::nullopt; };
    const auto found = ArchiveAccess(services_, noPassword, cancelled_)
                           .find({.what = ArchiveWish::What::enter,
                                  .browse = std::move(browse),
                                  .entry = *target,
                                  .mostBytes = mostBytesOfEntry});
    if (!found && found.error().empty())
        return PreviewNothing{"Obsah je chráněný heslem, nejdřív ho otevřete."};
    if (!found)
        return PreviewNothing{found.error()};
    const auto& inner = found->browse;
    return inner ? PreviewContent(listOf(*inner, subject.showHidden)) : ofFile(found->file.url);
}

PreviewContent PreviewReading::ofPath(const FileUrl& url, ShowHidden showHidden) const {
    const auto status = services_.files.status(url.path(), FollowLinks::yes);
    if (!status)
        return unreadable(url, status.error().reason());
    if (status->type == FileType::directory)
        return ofFolder(url, showHidden);
    if (status->type != FileType::regular)
        return PreviewNothing{};
    if (ArchiveSupport::archiveExtension(url.lastComponent()))
        return ofArchive(url);
    return ofFile(url);
}

PreviewContent PreviewReading::ofFolder(const FileUrl& url, ShowHidden showHidden) const {
    const auto listing = FolderOpener::open(services_.files, url, showHidden, services_.volumes);
    if (!listing)
        return PreviewNothing{listing.error().message()};
    return listOf(listing->items, showHidden, {});
}

PreviewContent PreviewReading::ofArchive(const FileUrl& url) const {
    const auto noPassword = [](const FileUrl&, const ArchiveError&) { return std::nullopt; };
    const auto found = ArchiveAccess(services_, noPassword, cancelled_)
                           .find({.what = ArchiveWish::What::read, .browse = {.place = url}});
    if (!found && found.error().empty())
        return PreviewNothing{"Archiv je chráněný heslem, nejdřív ho otevřete."};
    if (!found)
        return PreviewNothing{found.error()};
    const auto& browse = found->browse;
    return browse ? PreviewContent(listOf(*browse, ShowHidden::yes)) : PreviewNothing{};
}

PreviewContent PreviewReading::ofFile(const FileUrl& url) const {
    const auto file = RegularFile::openFollowing(url.path());
    if (!file && file.error().code == ESTALE)
        return PreviewNothing{};
    if (!file)
        return unreadable(url, file.error().reason());
    std::vector<std::byte> head(FileHead::longest);
    std::size_t length = 0;
    while (length < head.size() && !cancelled_->isSet()) {
        const auto count = file->read(std::span(head).subspan(length));
        if (!count)
            return unreadable(url, count.error().reason());
        if (*count == 0)
            break;
        length += *count;
    }
    head.resize(length);
    const auto kind = FileHead::decodedKind(head);
    if (!kind)
        return FileHead::content(head, file->opened().size > std::int64_t(length));
    auto decoded =
        decoder_.decode(*kind, file->descriptor(), [flag = cancelled_] { return flag->isSet(); });
    if (!decoded)
        return PreviewNothing{decoded.error()};
    return std::visit([](auto& content) { return PreviewContent(std::move(content)); }, *decoded);
}

} // namespace fennik::app
