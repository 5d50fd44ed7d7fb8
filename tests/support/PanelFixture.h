#pragma once

#include "app/model/PanelServices.h"
#include "core/listing/FileItems.h"
#include "tests/support/FaultyFileSystem.h"
#include "tests/support/ManualExecutor.h"
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
                .main = main,
                .now = [] { return std::chrono::steady_clock::time_point(); },
                .log = [this](const std::string& line) { lines.push_back(line); }};
    }
    /// Until nothing is left to do.
    void settle() {
        while (!disk.isIdle() || !main.isIdle()) {
            disk.runAll();
            main.runAll();
        }
    }

    TempFolder temp;
    FaultyFileSystem files;
    ManualExecutor disk;
    ManualExecutor main;
    std::vector<std::string> lines; ///< logged
};

} // namespace fennik::test
