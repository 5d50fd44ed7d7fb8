#pragma once

#include "core/archives/ArchivePacker.h"
#include "tests/support/DiskTree.h"
#include "tests/support/ProgramRun.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::test {

/// Packs what lies in the folder "from" into an archive in the folder "to".
class PackFixture : public testing::Test {
protected:
    PackFixture() {
        temp.folder("from");
        temp.folder("to");
    }

    FileUrl from(std::string_view name) const { return FileUrl(temp.path("from")).appending(name); }
    FileUrl to(std::string_view name) const { return FileUrl(temp.path("to")).appending(name); }

    bool pack(const std::vector<FileUrl>& sources, const FileUrl& destination,
              const PackOptions& options = {}) {
        return DirectPacker().pack(sources, destination, options, context);
    }
    /// All formats and what is in common use to read them: the folder they are unpacked to.
    std::string unpacked(const FileUrl& archive, ArchiveFormat format,
                         const std::string& password = {}) {
        const auto target = temp.path("unpacked " + std::to_string(++unpackings));
        temp.folder(target.substr(temp.url().path().size() + 1));
        std::vector<std::string> command{"tar", "-xf", archive.path()};
        if (format == ArchiveFormat::zip && password.empty())
            command = {"unzip", "-q", "-^", archive.path()};
        else if (format == ArchiveFormat::zip || format == ArchiveFormat::sevenZip)
            command = {"7z", "x", "-y", "-p" + password, archive.path()};
        const auto run = runProgram(command, target);
        EXPECT_EQ(run.exitCode, 0) << run.output;
        return target;
    }
    /// Names in the folder of the archive.
    std::vector<std::string> made() const {
        std::vector<std::string> names;
        for (const auto& [name, content] : diskTree(temp.path("to")))
            names.push_back(name);
        return names;
    }

    TempFolder temp;
    TestTrash trash{FileUrl(temp.path("trash"))};
    RecordingContext context{TransferKind::pack, trash};
    int unpackings = 0;
};

} // namespace fennik::test
