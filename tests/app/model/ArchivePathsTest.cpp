#include "app/model/ArchivePaths.h"

#include "tests/support/ManualArchives.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(ArchivePathsTest, linksAreFollowedInsideTheArchiveOnly) {
    const TempFolder temp;
    temp.file("a.tar");
    ManualArchives archives;
    auto hardLink = ManualEntry::link("d/hard", "d/e/file");
    hardLink.header.entry.kind = ArchiveEntry::Kind::hardlink;
    archives.content["a.tar"] = {
        ManualEntry::file("d/e/file", "x"),        ManualEntry::link("d/up", ".././d//e"),
        ManualEntry::link("chain", "d/up/file"),   hardLink,
        ManualEntry::link("loop", "loop"),         ManualEntry::link("d/back", "../d/back/x"),
        ManualEntry::link("absolute", "/d/e"),     ManualEntry::link("outside", "d/../../d"),
        ManualEntry::link("missing", "d/nothing"), ManualEntry::link("root", "d/.."),
    };
    const FileUrl url(temp.path("a.tar"));
    const auto stream = archives.open({.url = url}, [] { return false; }).value();
    const auto index = ArchiveIndex::read(*stream, url).value();
    const auto lead = [&](std::string_view path) {
        return app::ArchivePaths::resolved(*index, path).value_or("(nowhere)");
    };
    EXPECT_EQ(lead("d/e/file"), "d/e/file");
    EXPECT_EQ(lead("d/up"), "d/e");
    EXPECT_EQ(lead("chain"), "d/e/file");
    EXPECT_EQ(lead("d/hard"), "d/e/file");
    EXPECT_EQ(lead("root"), "");
    for (const auto* path : {"loop", "d/back", "absolute", "outside", "missing"})
        EXPECT_EQ(lead(path), "(nowhere)") << path;
    EXPECT_EQ(app::ArchivePaths::nearestFolder(*index, "d/e/file"), "d/e");
    EXPECT_EQ(app::ArchivePaths::nearestFolder(*index, "d/gone/deeper"), "d");
    EXPECT_EQ(app::ArchivePaths::nearestFolder(*index, "gone"), "");
}

} // namespace fennik::test
