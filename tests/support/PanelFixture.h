#pragma once

#include "app/model/PanelServices.h"
#include "app/model/Settings.h"
#include "core/archives/ArchiveExtractor.h"
#include "core/listing/FileItems.h"
#include "core/listing/FolderSizeCache.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/ManualArchives.h"
#include "tests/support/ManualExecutor.h"
#include "tests/support/ManualFolderEvents.h"
#include "tests/support/ManualTimers.h"
#include "tests/support/MemorySettings.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace fennik::test {

/// The names of all rows, in their order.
inline std::vector<std::string> namesOf(const FileItems& items) {
    std::vector<std::string> names;
    for (std::size_t row = 0; row < items.size(); ++row)
        names.emplace_back(items.view(row).name);
    return names;
}

/// A folder on the disk and the services of a panel, all of them cranked by hand.
class PanelFixture : public testing::Test {
protected:
    app::PanelServices services() {
        return {.files = files,
                .disk = disk,
                .sizingDisk = sizingDisk,
                .main = main,
                .delayed = timers,
                .events = events,
                .archives = archives,
                .temporaryPlaces = places,
                .volumes = [this] { return volumes; },
                .now = [this] { return timers.now(); },
                .today = [] { return Date{1'795'184'760, 0}; },
                .log = [this](const std::string& line) { lines.push_back(line); }};
    }
    /// Until nothing is left to do.
    void settle() {
        while (!disk.isIdle() || !sizingDisk.isIdle() || !main.isIdle()) {
            disk.runAll();
            sizingDisk.runAll();
            main.runAll();
        }
    }

    TempFolder temp;
    FaultyFileSystem files;
    ManualExecutor disk;
    ManualExecutor sizingDisk;
    ManualExecutor main;
    ManualTimers timers;
    ManualFolderEvents events;
    ManualArchives archives;
    TemporaryPlaces places{FileUrl(temp.path("cache")), sizingDisk, 1000};
    MemorySettings store;
    /// On the network, where no sizes are computed unasked.
    std::vector<Volume> volumes{{.mountPoint = "/", .type = "nfs", .isRemote = true}};
    app::Settings settings{store};
    FolderSizeCache sizeCache{600};
    std::vector<std::string> lines; ///< logged
    /// The user never gives one.
    const AskPassword noPassword = [](const FileUrl&, const ArchiveError&) { return std::nullopt; };
};

} // namespace fennik::test
