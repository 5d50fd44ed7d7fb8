#include "app/model/Settings.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using namespace app;
using testing::IsEmpty;

} // namespace

TEST(SettingsTest, aMissingKeyReadsTheRegisteredDefaultElseZero) {
    MemorySettings store;
    Settings settings(store);
    EXPECT_FALSE(settings.get(SettingKeys::confirmTrash));
    EXPECT_EQ(settings.get(SettingKeys::confirmThreshold), 0);
    EXPECT_EQ(settings.get(SettingKeys::appearance), "");
    EXPECT_THAT(settings.get(SettingKeys::favorites), IsEmpty());

    settings.registerDefaults();
    EXPECT_TRUE(settings.get(SettingKeys::confirmTrash));
    EXPECT_EQ(settings.get(SettingKeys::confirmThreshold), 10);
    EXPECT_EQ(settings.get(SettingKeys::appearance), "system");
    EXPECT_FALSE(settings.get(SettingKeys::showHidden));
    EXPECT_THAT(settings.get(SettingKeys::favorites), IsEmpty());
    EXPECT_EQ(store.writes(), 0);
}

TEST(SettingsTest, aStoredValueWinsUnlessItsTypeIsWrong) {
    MemorySettings store;
    Settings settings(store);
    settings.registerDefaults();
    settings.set(SettingKeys::confirmTrash, false);
    settings.set(SettingKeys::throttleMBps, 2.5);
    EXPECT_FALSE(settings.get(SettingKeys::confirmTrash));
    EXPECT_EQ(settings.get(SettingKeys::throttleMBps), 2.5);
    EXPECT_EQ(store.writes(), 2);

    store.setValue(SettingKeys::confirmTrash.name, std::string("maybe"));
    EXPECT_TRUE(settings.get(SettingKeys::confirmTrash));
}

} // namespace fennik::test
