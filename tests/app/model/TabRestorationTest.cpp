#include "app/model/AppModel.h"
#include "app/model/SavedState.h"

#include "tests/support/AppFixture.h"

#include <filesystem>
#include <memory>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::SizeIs;

class TabRestorationTest : public AppFixture {
protected:
    TabRestorationTest() {
        for (const auto* name : {"a", "b", "c", "former"})
            temp.folder(name);
    }

    /// Saves the folders as the tabs of the left panel; names in the test's own folder.
    void save(const std::vector<std::string>& names, std::size_t active) {
        SavedState state;
        for (const auto& name : names)
            state.left.tabs.push_back({.path = temp.path(name)});
        state.left.active = active;
        settings.set(SettingKeys::panels, {state.toJson()});
    }
    void begin(const std::optional<std::string>& given = {}) {
        app = std::make_unique<AppModel>(appServices(), home());
        app->start(given, std::nullopt);
    }
    PanelModel& left() { return app->panel(PanelSide::left); }
    /// The tabs of the left panel, by the names of their folders.
    std::vector<std::string> tabs() {
        std::vector<std::string> names;
        for (const auto& tab : left().tabs())
            names.emplace_back(FileUrl(tab.path).lastComponent());
        return names;
    }
    /// Whether the rows are those of the active tab's folder.
    bool isConsistent() {
        return !left().loading() && !left().error() &&
               left().items().folder().path() == left().tab().path;
    }

    std::unique_ptr<AppModel> app;
};

} // namespace

TEST_F(TabRestorationTest, tabsWithoutTheirFolderAreDropped) {
    temp.file("file");
    save({"gone", "a", "file", "a/gone", "b"}, 4);
    begin();
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "b"));
    EXPECT_EQ(left().activeTab(), 1U);
    EXPECT_TRUE(isConsistent());

    save({"a", "gone", "b"}, 1);
    begin();
    settle();
    EXPECT_EQ(left().tab().path, temp.path("b")) << "the next one stands in for the active one";
    EXPECT_TRUE(isConsistent());
}

TEST_F(TabRestorationTest, aTabThatDoesNotAnswerStaysAndHoldsUpNobody) {
    save({"a", "b", "gone"}, 1);
    disk.stick(temp.path("a"));
    begin();
    settle();
    EXPECT_TRUE(isConsistent()) << "the active tab waits for nobody";
    timers.pass(1s);
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "b"));

    // Where the active one does not answer, its listing is begun, and can be left.
    disk.stick(temp.path("b"));
    save({"a", "b"}, 1);
    begin();
    settle();
    EXPECT_FALSE(left().loading());
    timers.pass(1s);
    settle();
    EXPECT_TRUE(left().loading());
    EXPECT_TRUE(left().escape());
    left().nextTab();
    settle();
    EXPECT_TRUE(isConsistent());
    disk.stick("");
    settle();
    EXPECT_EQ(left().tab().path, temp.path("a"));
    EXPECT_TRUE(isConsistent());
}

TEST_F(TabRestorationTest, withoutTabsTheFormerFolderOpensOrElseHome) {
    begin();
    settle();
    EXPECT_EQ(left().tab().path, home().path());
    settings.set(SettingKeys::leftPath, temp.path("former"));
    begin();
    settle();
    EXPECT_EQ(left().tab().path, temp.path("former"));
    save({"gone", "gone too"}, 1);
    begin();
    settle();
    EXPECT_THAT(tabs(), ElementsAre("former"));
    EXPECT_TRUE(isConsistent());

    for (const auto& path : {temp.path("gone"), std::string("former"), std::string()}) {
        settings.set(SettingKeys::leftPath, path);
        begin();
        settle();
        EXPECT_EQ(left().tab().path, home().path()) << path;
        EXPECT_TRUE(isConsistent());
    }
    disk.stick(temp.path("former"));
    settings.set(SettingKeys::leftPath, temp.path("former"));
    begin();
    settle();
    timers.pass(1s);
    settle();
    EXPECT_EQ(left().tab().path, home().path()) << "nobody waits longer for it";

    std::filesystem::remove_all(home().path());
    begin();
    timers.pass(1s);
    settle();
    EXPECT_TRUE(left().ownFolderFailed());
    left().goToParent();
    settle();
    EXPECT_TRUE(isConsistent());
    EXPECT_EQ(left().tab().path, temp.url().path());
}

TEST_F(TabRestorationTest, aGivenPathHasItsOwnTabOrTheOneThatIsThere) {
    save({"a", "gone", "b"}, 0);
    begin(temp.path("c"));
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "c", "b"));
    EXPECT_EQ(left().tab().path, temp.path("c"));
    EXPECT_TRUE(isConsistent());
    EXPECT_THAT(lines, SizeIs(2)) << "each panel is listed once";

    begin(temp.path("b"));
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "b"));
    EXPECT_EQ(left().activeTab(), 1U);
    EXPECT_TRUE(isConsistent());

    begin(temp.path("gone"));
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "gone", "b")) << "what was asked for fails in sight";
    EXPECT_TRUE(left().ownFolderFailed());
    save({}, 0);
    begin(temp.path("c"));
    settle();
    EXPECT_THAT(tabs(), ElementsAre("c"));
}

TEST_F(TabRestorationTest, tenThousandTabsAreNoMatter) {
    std::vector<std::string> names;
    for (int i = 0; i < 5'000; ++i)
        names.insert(names.end(), {"a", "gone" + std::to_string(i)});
    save(names, 9'999);
    begin();
    settle();
    EXPECT_THAT(tabs(), SizeIs(5'000));
    EXPECT_EQ(left().activeTab(), 4'999U);
    EXPECT_TRUE(isConsistent());
}

TEST_F(TabRestorationTest, whatTheUserDoesMeanwhileStays) {
    // The tab that is active has lost its folder, but was taken elsewhere.
    save({"a", "gone", "b"}, 1);
    disk.stick(temp.path("a"));
    begin();
    settle();
    app->perform(KAction::home);
    settle();
    timers.pass(1s);
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "home", "b"));
    EXPECT_TRUE(isConsistent());

    // A tab without its folder is looked at when the rest is dropped.
    save({"b", "gone", "gone"}, 0);
    disk.stick(temp.path("b"));
    begin();
    app->perform(KAction::nextTab);
    settle();
    timers.pass(1s);
    settle();
    EXPECT_THAT(tabs(), ElementsAre("b", "gone"));
    EXPECT_EQ(left().activeTab(), 1U);
    EXPECT_TRUE(left().ownFolderFailed());

    // No tabs were saved on this side, but those of the other one came over.
    SavedState state;
    state.right.tabs = {{.path = temp.path("b")}, {.path = temp.path("c")}};
    settings.set(SettingKeys::panels, {state.toJson()});
    settings.set(SettingKeys::leftPath, temp.path("former"));
    disk.stick(temp.path("former"));
    begin();
    app->perform(KAction::swapPanels);
    settle();
    timers.pass(1s);
    settle();
    EXPECT_THAT(tabs(), ElementsAre("b", "c"));
    EXPECT_TRUE(isConsistent());
    app->perform(KAction::swapPanels);
    settle();

    // The folder that stands in is on its way when a tab is opened.
    save({}, 0);
    begin();
    app->perform(KAction::newTab);
    settle();
    timers.pass(1s);
    settle();
    EXPECT_THAT(tabs(), ElementsAre("home", "home"));
    EXPECT_TRUE(isConsistent());
}

TEST_F(TabRestorationTest, whatCannotBeReadIsKeptBesideTheTabsThatAreSavedNext) {
    save({"a"}, 0);
    const auto whole = settings.get(SettingKeys::panels).bytes;
    for (const auto& text :
         {whole.substr(0, whole.size() / 2), std::string("\xFF\0{", 3), std::string("[]"),
          std::string(R"({"version":2,"panels":[{"tabs":[]}]})"),
          std::string(R"({"left":{"tabs":[{"path":"a"},{"path":""}]},"right":"x"})")}) {
        settings.set(SettingKeys::panels, {text});
        begin();
        settle();
        EXPECT_TRUE(isConsistent());
        EXPECT_EQ(left().tab().path, home().path());
        EXPECT_FALSE(app->toast());
        app->perform(KAction::newTab);
        app->saveNow();
        begin();
        EXPECT_THAT(tabs(), ElementsAre("home", "home"));
        EXPECT_EQ(settings.get(SettingKeys::unreadablePanels).bytes, text);
        settle();
    }
}

TEST_F(TabRestorationTest, tabsThatWereWrittenByHandCount) {
    const SettingKey<std::vector<std::string>> asTexts{SettingKeys::panels.name};
    settings.set(asTexts, {R"({"left":{"tabs":[{"path":")" + temp.path("a") + "\"}",
                           R"({"path":")" + temp.path("b") + "\"}]}}"});
    begin();
    settle();
    EXPECT_THAT(tabs(), ElementsAre("a", "b"));
    settings.set(asTexts, {"neither", "nor"});
    begin();
    settle();
    EXPECT_EQ(settings.get(SettingKeys::unreadablePanels).bytes, "neither,nor");
}

} // namespace fennik::test
