#pragma once

#include "core/archives/ArchiveExtractor.h"
#include "core/operations/Undoing.h"
#include "tests/core/archives/ScriptedArchives.h"
#include "tests/support/DiskTree.h"
#include "tests/support/RecordingContext.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestTrash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

using Tree = std::map<std::string, std::string>;

/// A target folder with a stranger's folder beside it, and an archive that the test writes.
class ExtractionFixture : public testing::Test {
protected:
    ExtractionFixture() {
        temp.folder("target");
        temp.folder("outside");
        temp.folder("trash");
        temp.file("outside/sentinel", "untouched");
    }
    ~ExtractionFixture() override {
        EXPECT_EQ(diskTree(temp.path("outside")), (Tree{{"sentinel", "untouched"}}));
    }

    PairOutcome extract() { return extract(archives); }
    PairOutcome extract(const ArchiveOpener& opener) {
        ArchiveExtractor extractor(
            opener, context, [this](const FileUrl&, const ArchiveError& reason) {
                asked.push_back(reason.kind == ArchiveError::Case::wrongPassword);
                if (passwords.empty())
                    return std::optional<std::string>();
                auto password = std::move(passwords.front());
                passwords.erase(passwords.begin());
                return std::optional(std::move(password));
            });
        outcomes = extractor.run({extraction});
        return outcomes.empty() ? PairOutcome::pending : outcomes.front();
    }
    /// As the user has seen it in a panel before.
    void look() {
        const auto stream = archives.open({.url = extraction.archive}, [] { return false; });
        extraction.index = *ArchiveIndex::read(**stream, extraction.archive);
    }
    void write(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories(std::filesystem::path(temp.path(name)).parent_path());
        std::ofstream(temp.path(name), std::ios::binary) << content;
    }
    Tree target() const { return diskTree(temp.path("target")); }
    Tree trashed() const { return diskTree(temp.path("trash")); }
    /// What the steps of the job take back, with a trash of its own.
    std::vector<std::string> undo() const {
        const TestTrash second(FileUrl(temp.path("second")));
        std::filesystem::create_directories(temp.path("second"));
        return takeBack(context.steps, second);
    }

    TempFolder temp;
    TestTrash trash{FileUrl(temp.path("trash"))};
    RecordingContext context{TransferKind::extract, trash};
    ScriptedArchives archives;
    Extraction extraction{.archive = FileUrl(temp.path("x.tar")),
                          .target = FileUrl(temp.path("target"))};
    std::vector<std::string> passwords;
    std::vector<PairOutcome> outcomes; ///< of the last extraction
    std::vector<bool> asked;           ///< whether the password before was wrong
};

} // namespace fennik::test
