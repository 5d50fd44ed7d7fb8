#pragma once

#include "app/model/ArchiveBrowse.h"
#include "app/model/CancelFlag.h"
#include "app/model/PanelServices.h"
#include "app/model/PreviewContent.h"
#include "core/listing/FileItem.h"
#include "core/listing/FolderOpener.h"

#include <memory>
#include <optional>
#include <string>

namespace fennik::app {

/// What a preview is about.
struct PreviewSubject {
    FileItem item = {};                        ///< not the parent entry
    std::optional<ArchiveBrowse> archive = {}; ///< that the item lies in
    FolderOpener::ShowHidden showHidden = FolderOpener::ShowHidden::no;
};

/// Reads what a preview shows of an item, and no more of it than that. Waits for the disk and for
/// other processes; lives on a worker, for one item. Asks the user nothing.
class PreviewReading {
public:
    PreviewReading(PanelServices services, const PreviewDecoder& decoder,
                   std::shared_ptr<const CancelFlag> cancelled);

    /// Once it was cancelled, whatever comes means nothing.
    PreviewContent read(const PreviewSubject& subject) const;

private:
    using ShowHidden = FolderOpener::ShowHidden;
    PreviewContent ofEntry(const PreviewSubject& subject, ArchiveBrowse browse) const;
    PreviewContent ofPath(const FileUrl& url, ShowHidden showHidden) const;
    PreviewContent ofFolder(const FileUrl& url, ShowHidden showHidden) const;
    PreviewContent ofArchive(const FileUrl& url) const;
    PreviewContent ofFile(const FileUrl& url) const;

    PanelServices services_;
    const PreviewDecoder& decoder_;
    std::shared_ptr<const CancelFlag> cancelled_;
};

} // namespace fennik::app
