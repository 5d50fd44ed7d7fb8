#include "core/listing/FileItem.h"
#include "core/listing/FileItems.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

FileItem named(std::string name, FileKind kind = FileKind::file) {
    FileItem item;
    item.name = std::move(name);
    item.kind = kind;
    return item;
}

} // namespace

TEST(FileItemTest, extensionBeginsBehindTheLastDotThatIsNotTheFirstByte) {
    struct Case {
        FileItem item;
        std::optional<std::string> extension;
        std::string baseName;
    };
    for (const auto& [item, extension, baseName] : {
             Case{named("archive.tar.gz"), "gz", "archive.tar"},
             Case{named(".zshrc"), std::nullopt, ".zshrc"},
             Case{named(".a.b"), "b", ".a"},
             Case{named("README"), std::nullopt, "README"},
             Case{named("x."), std::nullopt, "x."},
             Case{named("photos.2024", FileKind::directory), std::nullopt, "photos.2024"},
             Case{named("Mail.app", FileKind::package), "app", "Mail"},
             Case{FileItem::parentEntry(FileUrl("/a/b")), std::nullopt, ".."},
         }) {
        EXPECT_EQ(item.fileExtension(), extension) << item.name;
        EXPECT_EQ(item.baseName(), baseName);
    }
}

TEST(FileItemTest, onlyFoldersAndWhatLeadsToThemOpenAsFolders) {
    auto link = named("l", FileKind::symlink);
    EXPECT_FALSE(link.opensAsFolder());
    link.linksToDirectory = true;
    EXPECT_TRUE(link.opensAsFolder());
    EXPECT_TRUE(link.isFolderLike());

    auto alias = named("a");
    EXPECT_FALSE(alias.isLink());
    alias.aliasTarget = FileUrl("/t/");
    EXPECT_TRUE(alias.isLink());
    EXPECT_FALSE(alias.opensAsFolder());
    alias.linksToDirectory = true;
    EXPECT_TRUE(alias.opensAsFolder());
    EXPECT_EQ(alias.resolvedURL(), FileUrl("/t/"));

    EXPECT_TRUE(named("d", FileKind::directory).opensAsFolder());
    EXPECT_FALSE(named("p.app", FileKind::package).opensAsFolder());
    EXPECT_TRUE(named("p.app", FileKind::package).isFolderLike());
    EXPECT_FALSE(named("o", FileKind::other).opensAsFolder());
}

TEST(FileItemsTest, givesBackEveryFieldOfWhatWasAdded) {
    const FileUrl folder("/f");
    std::vector<FileItem> items;
    for (const auto kind : {FileKind::file, FileKind::directory, FileKind::package,
                            FileKind::symlink, FileKind::other}) {
        FileItem item;
        item.name = "name \xFF " + std::to_string(static_cast<int>(kind));
        item.url = folder.appending(item.name, urlForm(kind));
        item.kind = kind;
        item.linksToDirectory = kind == FileKind::symlink;
        item.isHidden = kind == FileKind::other;
        item.size = (std::int64_t{1} << 62) + static_cast<int>(kind);
        item.modified = {-5, 999'999'999};
        item.mode = 07654;
        if (kind == FileKind::file)
            item.aliasTarget = FileUrl("/elsewhere/");
        items.push_back(std::move(item));
    }
    FileItems::Builder builder(folder);
    for (const auto& item : items)
        builder.add(item.view());
    const auto built = builder.finish();

    ASSERT_EQ(built.size(), items.size());
    for (std::size_t row = 0; row < items.size(); ++row)
        EXPECT_EQ(built[row], items[row]) << row;

    // Orders of orders still lead to the right items, and the parent entry may stand anywhere.
    const auto turned = built.reordered({4, FileItems::parentRow, 0}).reordered({1, 0, 2});
    ASSERT_EQ(turned.size(), 3U);
    EXPECT_EQ(turned[0], FileItem::parentEntry(folder));
    EXPECT_EQ(turned[1], items[4]);
    EXPECT_EQ(turned[2], items[0]);
    EXPECT_EQ(turned.rowOf(items[0].name), 2U);
    EXPECT_EQ(turned.rowOf(items[1].name), std::nullopt);
}

TEST(FileItemTest, hashesOverEveryField) {
    const auto item = named("a");
    const auto hash = std::hash<FileItem>();
    auto other = item;
    EXPECT_EQ(hash(item), hash(other));
    other.modified.nanoseconds = 1;
    EXPECT_NE(hash(item), hash(other));
    EXPECT_NE(item, other);
}

} // namespace fennik::test
