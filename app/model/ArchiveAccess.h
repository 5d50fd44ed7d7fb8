#pragma once

#include "app/model/ArchiveBrowse.h"
#include "app/model/CancelFlag.h"
#include "app/model/PanelServices.h"
#include "core/archives/ArchiveExtractor.h"
#include "core/base/FileUrl.h"
#include "core/platform/TemporaryPlaces.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>

namespace fennik::app {

/// What a panel wants of an archive.
struct ArchiveWish {
    enum class What {
        show,  ///< a folder of it; the archive is read again where its file is another one now
        read,  ///< the same, read again in any case, or for the first time
        enter, ///< one file in it
    };
    What what = What::show;
    ArchiveBrowse browse = {}; ///< without an index to be read for the first time
    std::string entry = {};    ///< to be entered
    /// No larger file is taken out; none: the limit of the temporary places.
    std::optional<std::int64_t> mostBytes = {};

    /// Where the panel will be.
    FileUrl location() const;
};

/// A copy of a file that lies in an archive, for reading only.
struct TakenFile {
    FileUrl url = {};
    std::shared_ptr<const TemporaryPlace> place = {}; ///< keeps it
};

/// Reads archives for a panel and takes single files out of them. Waits for the disk and the user;
/// lives on a worker, for one wish.
class ArchiveAccess {
public:
    /// What came of a wish: an archive to be shown, or a file that is none.
    struct Found {
        std::optional<ArchiveBrowse> browse = {};
        TakenFile file = {};
    };
    /// The failure is a sentence, or empty where the user wanted no more.
    template <class T>
    using Result = std::expected<T, std::string>;

    ArchiveAccess(PanelServices services, AskPassword askPassword,
                  std::shared_ptr<const CancelFlag> cancelled);

    Result<Found> find(ArchiveWish wish) const;

private:
    enum class Asking { forbidden, allowed }; ///< for a password
    Result<ArchiveBrowse> read(const FileUrl& file, ArchiveBrowse wanted, Asking asking) const;
    ArchiveBrowse show(ArchiveBrowse known) const;
    /// `wanted` says what of an archive inside is to be shown.
    Result<Found> enter(ArchiveBrowse holder, const std::string& entry, ArchiveBrowse wanted,
                        std::int64_t mostBytes) const;
    Result<TakenFile> takeOut(ArchiveBrowse& holder, const std::string& entry,
                              std::int64_t mostBytes) const;

    PanelServices services_;
    AskPassword askPassword_;
    std::shared_ptr<const CancelFlag> cancelled_;
};

} // namespace fennik::app
