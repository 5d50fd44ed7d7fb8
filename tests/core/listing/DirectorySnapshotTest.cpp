#include "core/listing/DirectorySnapshot.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>

namespace fennik::test {

namespace {

using testing::ElementsAre;

FileItemView item(std::string_view name, std::int64_t size = 0) {
    return {.name = name, .size = size, .modified = {1, 0}, .mode = 0644};
}

DirectorySnapshot snapshot(const std::vector<FileItemView>& items) {
    FileItems::Builder builder{FileUrl()};
    for (const auto& each : items)
        builder.add(each);
    return DirectorySnapshot(builder.finish());
}

} // namespace

TEST(DirectorySnapshotTest, tellsWhatWasAddedRemovedAndChanged) {
    const auto before = snapshot({item("a"), item("b"), item("c"), item("d"), item("e")});
    const auto after = snapshot({item("a", 1), item("x"), item("d", 1), item("c"), item("e", 2)});
    const auto difference = DirectorySnapshot::compare(before, after);
    EXPECT_THAT(difference.added, ElementsAre("x"));
    EXPECT_THAT(difference.removed, ElementsAre("b"));
    EXPECT_THAT(difference.changed, ElementsAre("a", "d", "e"));
    EXPECT_TRUE(DirectorySnapshot::compare(before, before).isEmpty());
    EXPECT_EQ(DirectorySnapshot::compare({}, before).added.size(), 5U);
    EXPECT_EQ(DirectorySnapshot::compare(before, {}).removed.size(), 5U);
}

TEST(DirectorySnapshotTest, everythingThatARowShowsCanChange) {
    const auto plain = item("name");
    std::vector<FileItemView> others(6, plain);
    others[0].kind = FileKind::symlink;
    others[1].size = 1;
    others[2].modified.nanoseconds = 1;
    others[3].mode = 0600;
    others[4].linksToDirectory = true;
    const FileUrl target("/target");
    others[5].aliasTarget = &target;
    for (const auto& other : others) {
        const auto before = snapshot({plain});
        const auto after = snapshot({other});
        EXPECT_THAT(DirectorySnapshot::compare(before, after).changed, ElementsAre("name"));
        EXPECT_THAT(DirectorySnapshot::compare(after, before).changed, ElementsAre("name"));
        EXPECT_TRUE(DirectorySnapshot::compare(after, snapshot({other})).isEmpty());
    }
}

TEST(DirectorySnapshotTest, agreesWithAPlainComparisonInAnyOrder) {
    std::mt19937 chance(1);
    for (int round = 0; round < 200; ++round) {
        std::map<std::string, int> old;
        std::map<std::string, int> now;
        for (int i = 0; i < 60; ++i) {
            const auto name = std::to_string(chance() % 80);
            old[name] = static_cast<int>(chance() % 2);
            if (chance() % 4 != 0)
                now[name] = old[name];
            if (chance() % 8 == 0)
                now[std::to_string(chance() % 80)] = 2;
        }
        std::vector<FileItemView> oldItems;
        std::vector<FileItemView> newItems;
        for (const auto& [name, size] : old)
            oldItems.push_back(item(name, size));
        for (const auto& [name, size] : now)
            newItems.push_back(item(name, size));
        if (round % 2 == 0)
            std::ranges::shuffle(newItems, chance);

        std::vector<std::string_view> added;
        std::vector<std::string_view> removed;
        std::vector<std::string_view> changed;
        for (const auto& each : newItems) {
            const auto found = old.find(std::string(each.name));
            if (found == old.end())
                added.push_back(each.name);
            else if (found->second != each.size)
                changed.push_back(each.name);
        }
        for (const auto& [name, size] : old) {
            if (!now.contains(name))
                removed.push_back(name);
        }
        const auto before = snapshot(oldItems);
        const auto after = snapshot(newItems);
        const auto difference = DirectorySnapshot::compare(before, after);
        ASSERT_EQ(difference.added, added);
        ASSERT_EQ(difference.removed, removed);
        ASSERT_EQ(difference.changed, changed);
    }
}

} // namespace fennik::test
