#include "core/listing/FolderOpener.h"

#include "core/base/CzechText.h"
#include "core/listing/AliasResolver.h"
#include "core/listing/DirectoryReader.h"
#include "core/listing/LinkRoutes.h"
#include "core/listing/PackageTypes.h"

#include <cerrno>
#include <utility>

namespace fennik::FolderOpener {

namespace {

constexpr std::size_t expectedItems = 256;

bool isDirectory(const FileSystem& files, const FileUrl& url) {
    const auto status = files.status(url.path(), FollowLinks::yes);
    return status && status->type == FileType::directory;
}

/// Turns raw entries of one folder into items.
class Converter {
public:
    Converter(const FileSystem& files, FileUrl folder, ShowHidden showHidden,
              Volumes::Source mounted, const KnownLinks& known)
        : files_(files),
          folder_(std::move(folder)),
          showHidden_(showHidden),
          routes_(files, folder_, std::move(mounted)),
          known_(known),
          builder_(folder_, expectedItems) {}

    void add(const DirectoryReader::Entry& entry) {
        FileItemView item{.name = entry.name,
                          .kind = entry.kind,
                          .isHidden = entry.hiddenFlag || entry.name.starts_with('.'),
                          .size = entry.size,
                          .modified = entry.modified,
                          .mode = entry.mode};
        if (item.isHidden && showHidden_ == ShowHidden::no)
            return;
        std::optional<FileUrl> aliasTarget;
        if (item.kind == FileKind::directory && PackageTypes::isPackageName(item.name))
            item.kind = FileKind::package;
        else if (item.kind == FileKind::directory)
            item.size = 0;
        else if (item.kind == FileKind::symlink)
            item.linksToDirectory = leadsToFolder(item.name);
        else if (entry.isAlias)
            aliasTarget = AliasResolver::resolve(folder_.appending(item.name));
        if (aliasTarget) {
            item.aliasTarget = &*aliasTarget;
            const auto status = files_.status(aliasTarget->path(), FollowLinks::yes);
            item.linksToDirectory =
                status ? status->type == FileType::directory : aliasTarget->hasDirectoryForm();
        }
        builder_.add(item);
    }

    FileItems finish() { return builder_.finish(); }
    RemoteLinks takeRemoteLinks() { return std::move(remoteLinks_); }

private:
    bool leadsToFolder(std::string_view name) {
        const auto link = folder_.appending(name);
        const auto volume = routes_.remoteVolume(name);
        if (!volume)
            return isDirectory(files_, link);
        const auto known = known_.find(link.path());
        const bool isFolder = known != known_.end() && known->second;
        remoteLinks_[*volume].push_back({.name = std::string(name), .isFolder = isFolder});
        return isFolder;
    }

    const FileSystem& files_;
    FileUrl folder_;
    ShowHidden showHidden_;
    LinkRoutes routes_;
    const KnownLinks& known_;
    RemoteLinks remoteLinks_;
    FileItems::Builder builder_;
};

FileUrl asDirectory(const FileUrl& url) {
    return FileUrl(url.path(), FileUrl::Form::directory);
}

} // namespace

Failure Failure::noPermission(FileUrl url) {
    return {Case::noPermission, std::move(url), {}};
}

Failure Failure::notFound(FileUrl url) {
    return {Case::notFound, std::move(url), {}};
}

Failure Failure::unreadable(FileUrl url, std::string reason) {
    return {Case::unreadable, std::move(url), std::move(reason)};
}

Failure Failure::of(PosixError error, FileUrl url) {
    switch (error.code) {
    case EPERM:
    case EACCES:
        return noPermission(std::move(url));
    case ENOENT:
    case ENXIO:
    case ENODEV:
    case ENOTDIR:
        return notFound(std::move(url));
    default:
        return unreadable(std::move(url), error.reason());
    }
}

std::string Failure::message() const {
    const auto name = quoted(url.lastComponent());
    switch (kind) {
    case Case::noPermission:
        return "macOS nedovolil Fenniku otevřít " + name +
               ". Povolte mu Plný přístup k disku a zkuste to znovu.";
    case Case::notFound:
        return "Složka " + name +
               " teď není dostupná – neexistuje, nebo je na odpojeném disku či síti.";
    case Case::unreadable:
        break;
    }
    return "Složku " + name + " nejde přečíst: " + reason;
}

std::expected<Listing, Failure> open(const FileSystem& files, const FileUrl& url,
                                     ShowHidden showHidden, Volumes::Source mounted,
                                     const KnownLinks& known) {
    const auto target = url.standardized();
    const auto status = files.status(target.path(), FollowLinks::yes);
    if (!status)
        return std::unexpected(Failure::of(status.error(), target));
    Listing listing;
    listing.directory = asDirectory(target);
    if (status->type != FileType::directory) {
        listing.directory = target.parent();
        listing.selectName = std::string(target.lastComponent());
    }
    Converter converter(files, listing.directory, showHidden, std::move(mounted), known);
    const auto read = DirectoryReader::read(
        files, listing.directory, [&converter](const auto& entry) { converter.add(entry); });
    if (!read)
        return std::unexpected(Failure::of(read.error(), target));
    listing.items = converter.finish();
    listing.remoteLinks = converter.takeRemoteLinks();
    return listing;
}

} // namespace fennik::FolderOpener
