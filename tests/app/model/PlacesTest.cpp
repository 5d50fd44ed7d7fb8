#include "app/model/Places.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using namespace app;
using testing::ElementsAre;
using testing::SizeIs;

struct PlacesTest : testing::Test {
    MemorySettings store;
    Settings settings{store};
};

} // namespace

TEST_F(PlacesTest, aFavoriteIsAddedOnceAndFoundAtTheNextStart) {
    Places places(settings);
    EXPECT_TRUE(places.addFavorite("/home/jana/Účty"));
    EXPECT_TRUE(places.addFavorite("/\xE8"));
    EXPECT_FALSE(places.addFavorite("/home/jana/Účty"));
    EXPECT_EQ(store.writes(), 2);
    EXPECT_THAT(Places(settings).favorites(), ElementsAre("/home/jana/Účty", "/\xE8"));

    EXPECT_TRUE(places.removeFavorite("/home/jana/Účty"));
    EXPECT_FALSE(places.removeFavorite("/home/jana/Účty"));
    EXPECT_FALSE(places.isFavorite("/home/jana/Účty"));
    EXPECT_THAT(Places(settings).favorites(), ElementsAre("/\xE8"));
}

TEST_F(PlacesTest, recentsAreTheNewestFifteenWithoutRepetition) {
    Places places(settings);
    for (int number = 1; number <= 16; ++number)
        places.noteRecent("/" + std::to_string(number));
    EXPECT_THAT(places.recents(), SizeIs(15));
    EXPECT_EQ(places.recents().back(), "/2");

    places.noteRecent(places.recents().back());
    EXPECT_THAT(places.recents(), SizeIs(15));
    EXPECT_EQ(places.recents().front(), "/2");
    EXPECT_EQ(places.recents().back(), "/3");
    EXPECT_EQ(Places(settings).recents(), places.recents());

    const auto writes = store.writes();
    places.noteRecent("/2");
    EXPECT_EQ(store.writes(), writes);
}

TEST_F(PlacesTest, storedListsThatMakeNoSenseAreReadAsFarAsTheyDo) {
    settings.set(SettingKeys::favorites, {"", "relative", "/a", "file:///%ZZ", "/a/", "file:///b",
                                          std::string("/n\0ul", 5)});
    settings.set(SettingKeys::recents, std::vector<std::string>(10'000, "/a"));
    EXPECT_THAT(Places(settings).favorites(), ElementsAre("/a", "/b"));
    EXPECT_THAT(Places(settings).recents(), ElementsAre("/a"));

    std::vector<std::string> many;
    for (int number = 0; number < 10'000; ++number)
        many.push_back("/" + std::to_string(number));
    settings.set(SettingKeys::favorites, many);
    settings.set(SettingKeys::recents, many);
    EXPECT_EQ(Places(settings).favorites(), many);
    EXPECT_THAT(Places(settings).recents(), SizeIs(15));
}

} // namespace fennik::test
