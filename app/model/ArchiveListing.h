#pragma once

#include "app/model/ArchiveBrowse.h"
#include "app/model/LinkTargets.h"
#include "core/listing/FileItems.h"
#include "core/listing/FileSorter.h"

namespace fennik::app {

/// What a panel shows of one folder of an archive.
struct ArchiveListing {
    FileItems items = {}; ///< of the folder `location`
    FolderSizes folderSizes = {};
    LinkTargets::NamedTargets linkTargets = {};

    /// Takes its time for many entries; safe on any thread.
    static ArchiveListing of(const ArchiveBrowse& browse);
};

} // namespace fennik::app
