#include "core/listing/FolderSizeCache.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace fennik::test {

TEST(FolderSizeCacheTest, anEntryLivesForItsLifetimeAndIsReplaced) {
    FolderSizeCache cache(60);
    const Date made{1000, 500'000'000};
    EXPECT_FALSE(cache.lookup("/a", made));
    cache.store("/a", 30, 2, made);
    EXPECT_EQ(cache.lookup("/a", {1060, 499'999'999}), (FolderSizeCache::Entry{30, 2, made}));
    EXPECT_FALSE(cache.lookup("/a", {1060, 500'000'000}));
    cache.store("/a", 40, 3, {1060, 0});
    EXPECT_EQ(cache.lookup("/a", {1061, 0})->bytes, 40);
    EXPECT_FALSE(cache.lookup("/A", made));
}

TEST(FolderSizeCacheTest, clearingOldEntriesKeepsTheValidOnes) {
    FolderSizeCache cache(10);
    for (int i = 0; i < 5000; ++i)
        cache.store(std::to_string(i), i, 1, {i / 100, 0});
    for (int i = 4100; i < 5000; ++i)
        ASSERT_EQ(cache.lookup(std::to_string(i), {49, 0})->bytes, i);
}

TEST(FolderSizeCacheTest, severalThreadsStoreAndLookUpAtOnce) {
    FolderSizeCache cache(10);
    const auto work = [&cache](int start) {
        for (int i = start; i < start + 2000; ++i) {
            cache.store(std::to_string(i), i, 1, {});
            const auto entry = cache.lookup(std::to_string(i), {});
            ASSERT_TRUE(entry && entry->bytes == i);
        }
    };
    const std::jthread left(work, 0);
    const std::jthread right(work, 1000);
}

} // namespace fennik::test
