#include "core/listing/FileSorter.h"

#include "core/listing/NameKey.h"

#include <gmock/gmock.h>

#include <random>

namespace fennik::test {

namespace {

using testing::ElementsAre;

FileItemView file(std::string_view name, std::int64_t size = 0, Date modified = {}) {
    return {.name = name, .size = size, .modified = modified, .mode = 0644};
}

FileItemView folder(std::string_view name) {
    return {.name = name, .kind = FileKind::directory, .mode = 0755};
}

FileItems listOf(const std::vector<FileItemView>& items) {
    FileItems::Builder builder{FileUrl("/f")};
    for (const auto& item : items)
        builder.add(item);
    return builder.finish();
}

std::vector<std::string> sorted(const FileItems& items, PanelSort sort,
                                const FolderSizes& sizes = {}) {
    const auto result = FileSorter::sort(items, sort, sizes);
    std::vector<std::string> names;
    for (std::size_t row = 0; row < result.size(); ++row)
        names.emplace_back(result.view(row).name);
    return names;
}

constexpr PanelSort byName{SortKey::name, true};

/// The order as it is defined, item by item, for holding the fast way against it.
bool comesBefore(const FileItemView& a, const FileItemView& b, PanelSort sort,
                 const FolderSizes& sizes) {
    const auto isFolder = [](const FileItemView& item) {
        return item.isFolderLike() && item.kind != FileKind::package;
    };
    const auto sizeOf = [&](const FileItemView& item) {
        if (!isFolder(item))
            return item.size;
        const auto known = sizes.find(item.name);
        return known == sizes.end() ? -1 : known->second;
    };
    if (isFolder(a) != isFolder(b))
        return isFolder(a);
    auto order = std::strong_ordering::equal;
    switch (sort.key) {
    case SortKey::name:
        order = NameKey::make(a.name) <=> NameKey::make(b.name);
        break;
    case SortKey::ext:
        order = NameKey::make(a.fileExtension().value_or("")) <=>
                NameKey::make(b.fileExtension().value_or(""));
        break;
    case SortKey::size:
        order = sizeOf(a) <=> sizeOf(b);
        break;
    case SortKey::modified:
        order = a.modified <=> b.modified;
        break;
    case SortKey::permissions:
        order = a.mode <=> b.mode;
        break;
    }
    if (order != 0)
        return sort.ascending == (order < 0);
    const auto byKey = NameKey::make(a.name) <=> NameKey::make(b.name);
    return byKey != 0 ? byKey < 0 : a.name < b.name;
}

} // namespace

TEST(FileSorterTest, namesAreNaturalAndCzech) {
    const auto items =
        listOf({file("file10"), file("Dan"), file("Čáp"), file("a1"), file("file2"), file("Cyril"),
                file("ábel"), file("a01"), file("Adam"), file("Abel")});
    EXPECT_THAT(sorted(items, byName), ElementsAre("a01", "a1", "Abel", "ábel", "Adam", "Cyril",
                                                   "Čáp", "Dan", "file2", "file10"));
}

TEST(FileSorterTest, parentThenFoldersStayOnTopInEveryDirection) {
    const FileItemView package{.name = "A.app", .kind = FileKind::package};
    const FileItemView link{.name = "l", .kind = FileKind::symlink, .linksToDirectory = true};
    const auto items = listOf({file("b"), folder("x"), package, link})
                           .reordered({0, 1, FileItems::parentRow, 2, 3});
    EXPECT_THAT(sorted(items, byName), ElementsAre("..", "l", "x", "A.app", "b"));
    EXPECT_THAT(sorted(items, {SortKey::name, false}), ElementsAre("..", "x", "l", "b", "A.app"));
}

TEST(FileSorterTest, foldersSortByTheirComputedSizes) {
    const auto items = listOf({folder("A"), folder("B"), file("f", 100)});
    const FolderSizes sizes{{"B", 10}};
    EXPECT_THAT(sorted(items, {SortKey::size, false}, sizes), ElementsAre("B", "A", "f"));
    EXPECT_THAT(sorted(items, {SortKey::size, true}, sizes), ElementsAre("A", "B", "f"));
}

TEST(FileSorterTest, equalItemsReadFromAToZInBothDirections) {
    const auto items = listOf({file("c", 1, {5, 2}), file("a", 1, {5, 2}), file("b", 1, {5, 1})});
    EXPECT_THAT(sorted(items, {SortKey::size, false}), ElementsAre("a", "b", "c"));
    EXPECT_THAT(sorted(items, {SortKey::modified, false}), ElementsAre("a", "c", "b"));
    EXPECT_THAT(sorted(items, {SortKey::ext, false}), ElementsAre("a", "b", "c"));
}

TEST(FileSorterTest, everyOrderIsTheDefinedOne) {
    std::mt19937 random(7);
    const std::vector<std::string> parts{"a",  "Á",  "č",    "c",  "1",
                                         "01", "10", ".txt", ".č", "longer part "};
    std::vector<std::string> names;
    for (int i = 0; i < 3000; ++i) {
        std::string name;
        for (auto length = 1 + random() % 6; length > 0; --length)
            name += parts[random() % parts.size()];
        names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    names.erase(std::ranges::unique(names).begin(), names.end());
    std::ranges::shuffle(names, random);

    std::vector<FileItemView> views;
    FolderSizes sizes;
    for (const auto& name : names) {
        auto item = random() % 4 == 0 ? folder(name) : file(name);
        item.size = item.kind == FileKind::file ? static_cast<std::int64_t>(random() % 5) : 0;
        item.modified = {static_cast<std::int64_t>(random() % 3) - 1,
                         static_cast<std::uint32_t>(random() % 2)};
        item.mode = static_cast<std::uint16_t>(random() % 3);
        if (item.kind == FileKind::directory && random() % 2 == 0)
            sizes[name] = static_cast<std::int64_t>(random() % 4);
        views.push_back(item);
    }
    const auto items = listOf(views);
    for (const auto key : allSortKeys) {
        for (const bool ascending : {true, false}) {
            const PanelSort sort{key, ascending};
            auto expected = views;
            std::ranges::sort(expected, [&](const auto& a, const auto& b) {
                return comesBefore(a, b, sort, sizes);
            });
            std::vector<std::string> expectedNames;
            for (const auto& item : expected)
                expectedNames.emplace_back(item.name);
            EXPECT_EQ(sorted(items, sort, sizes), expectedNames) << rawValue(key) << ascending;
        }
    }
}

TEST(PanelSortTest, choosingTurnsOrBegins) {
    const auto bySize = byName.choosing(SortKey::size);
    EXPECT_EQ(bySize, (PanelSort{SortKey::size, false}));
    EXPECT_EQ(bySize.choosing(SortKey::size), (PanelSort{SortKey::size, true}));
    EXPECT_EQ(bySize.choosing(SortKey::modified), (PanelSort{SortKey::modified, false}));
    EXPECT_EQ(bySize.choosing(SortKey::ext), (PanelSort{SortKey::ext, true}));
    EXPECT_EQ(bySize.choosing(SortKey::permissions), (PanelSort{SortKey::permissions, true}));
    for (const auto key : allSortKeys)
        EXPECT_EQ(sortKeyFromRawValue(rawValue(key)), key);
    EXPECT_EQ(sortKeyFromRawValue("Name"), std::nullopt);
}

} // namespace fennik::test
