#include "tests/support/AppFixture.h"
#include "tests/support/JobBody.h"

#include <future>

namespace fennik::test {

namespace {

using namespace app;
using testing::ElementsAre;

/// What the model makes of settings that change while it runs.
class AppSettingsTest : public AppFixture {
protected:
    AppSettingsTest() {
        QObject::connect(&model, &AppModel::changed, &model, [this](AppChanges changes) {
            announced += changes.testFlag(AppChange::settings) ? 1 : 0;
        });
    }
    ~AppSettingsTest() override {
        model.stopJobs();
        transfers.shutDown(std::chrono::seconds(5));
    }

    AppModel model{appServices(), home()};
    int announced = 0;
};

} // namespace

TEST_F(AppSettingsTest, everyChangeIsAnnouncedOnceWhereverItComesFrom) {
    model.settings().set(SettingKeys::density, "compact");
    EXPECT_EQ(announced, 1);
    model.settings().set(SettingKeys::density, "compact");
    EXPECT_EQ(announced, 1);
    model.perform(KAction::toggleHidden);
    EXPECT_EQ(announced, 2);
    EXPECT_TRUE(model.settings().get(SettingKeys::showHidden));
}

TEST_F(AppSettingsTest, bothPanelsShowHiddenFilesAsSoonAsTheSettingSaysSo) {
    temp.file("home/.skrytý");
    temp.file("home/vidět");
    model.start({}, {});
    settle();
    model.settings().set(SettingKeys::showHidden, true);
    for (const auto side : {PanelSide::left, PanelSide::right})
        EXPECT_THAT(namesOf(model.panel(side).items()), ElementsAre("..", ".skrytý", "vidět"));
    model.settings().set(SettingKeys::showHidden, false);
    for (const auto side : {PanelSide::left, PanelSide::right})
        EXPECT_THAT(namesOf(model.panel(side).items()), ElementsAre("..", "vidět"));
}

TEST_F(AppSettingsTest, aJobAtWorkFeelsAnotherLimitOfSpeed) {
    model.settings().set(SettingKeys::throttleMBps, 1e-6);
    std::promise<void> begins;
    std::promise<void> ends;
    auto end = ends.get_future();
    model.engine().enqueue({}, {}, bodyOf([&](OperationContext& context) {
                               begins.set_value();
                               context.bytesWritten(1000);
                               ends.set_value();
                           }));
    begins.get_future().wait();
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    model.settings().set(SettingKeys::throttleMBps, 0);
    EXPECT_EQ(end.wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

} // namespace fennik::test
