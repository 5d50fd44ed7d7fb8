#include "app/model/SavedState.h"

#include <gmock/gmock.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace fennik::test {

namespace {

using namespace app;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> pathsOf(const SavedPanel& panel) {
    std::vector<std::string> paths;
    for (const auto& tab : panel.tabs)
        paths.push_back(tab.path);
    return paths;
}

PanelTab tabAt(std::string path, std::optional<std::string> cursorName = {}) {
    PanelTab tab;
    tab.path = std::move(path);
    tab.cursorName = std::move(cursorName);
    return tab;
}

SavedPanel leftOf(const std::string& panelJson) {
    const auto state = SavedState::fromJson(R"({"left":)" + panelJson + "}");
    return state ? state->left : SavedPanel();
}

} // namespace

TEST(SavedStateTest, comesBackAsItWas) {
    SavedState state;
    state.activeSide = PanelSide::right;
    state.left.tabs = {tabAt("/home/jana", "Účty"), tabAt("/\xE8", "50%\xFF")};
    state.left.tabs[0].sort = {SortKey::size, false};
    state.left.active = 1;
    state.right.tabs = {tabAt("/")};

    const auto read = SavedState::fromJson(state.toJson());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->activeSide, PanelSide::right);
    EXPECT_EQ(read->left.active, 1U);
    ASSERT_THAT(read->left.tabs, SizeIs(2));
    ASSERT_THAT(read->right.tabs, SizeIs(1));
    const auto expectSame = [](const PanelTab& tab, const PanelTab& expected) {
        EXPECT_EQ(tab.id, expected.id);
        EXPECT_EQ(tab.path, expected.path);
        EXPECT_EQ(tab.sort, expected.sort);
        EXPECT_EQ(tab.cursorName, expected.cursorName);
    };
    expectSame(read->left.tabs[0], state.left.tabs[0]);
    expectSame(read->left.tabs[1], state.left.tabs[1]);
    expectSame(read->right.tabs[0], state.right.tabs[0]);
}

TEST(SavedStateTest, hasTheNamesOfTheStoredFormat) {
    SavedState state;
    state.left.tabs = {tabAt("/a", "b")};
    state.left.tabs[0].id = *Uuid::parse("f81d4fae-7dec-11d0-a765-00a0c91e6bf6");
    EXPECT_EQ(state.toJson(),
              R"({"activeSide":"left","left":{"active":0,"tabs":[{"cursorName":"b",)"
              R"("id":"f81d4fae-7dec-11d0-a765-00a0c91e6bf6","path":"/a",)"
              R"("sort":{"ascending":true,"key":"name"}}]},"right":{"active":0,"tabs":[]}})");
}

TEST(SavedStateTest, whatIsNoObjectIsNoState) {
    for (const auto& text :
         {std::string(), std::string("{"), std::string("[]"), std::string("null"),
          std::string("{}x"), std::string("{\"a\":\"\xFF\"}"), std::string(1'000'000, '['),
          std::string("{\"a\":1e999}")})
        EXPECT_FALSE(SavedState::fromJson(text)) << text.substr(0, 20);
}

TEST(SavedStateTest, keepsAllThatIsGood) {
    const auto state = SavedState::fromJson(R"({"left":{"tabs":[
        {"path":"/good","sort":{"key":"size","ascending":"no"},"cursorName":null,"future":[{}]},
        {"path":"relative"}, {"path":""}, {"path":7}, {}, 7, null, [[]], {"path":"/nul\u0000"},
        {"path":"file://"}, {"path":"/also/good/","sort":[],"cursorName":"a/b"},
        {"path":"/third","sort":{"key":"color"},"cursorName":7}],"active":"first"},
        "right":7,"activeSide":"middle","future":{"a":1}})");
    ASSERT_TRUE(state);
    EXPECT_THAT(pathsOf(state->left), ElementsAre("/good", "/also/good", "/third"));
    EXPECT_EQ(state->left.tabs[0].sort, (PanelSort{SortKey::size, true}));
    EXPECT_EQ(state->left.tabs[1].sort, PanelSort());
    for (const auto& tab : state->left.tabs)
        EXPECT_FALSE(tab.cursorName);
    EXPECT_THAT(state->right.tabs, IsEmpty());
    EXPECT_EQ(state->activeSide, PanelSide::left);
}

TEST(SavedStateTest, identifiersAreUniqueWhateverWasStored) {
    const std::string tabs =
        R"({"tabs":[{"path":"/a","id":"f81d4fae-7dec-11d0-a765-00a0c91e6bf6"},
                    {"path":"/b","id":"F81D4FAE-7DEC-11D0-A765-00A0C91E6BF6"},
                    {"path":"/c","id":"x"},{"path":"/d"}]})";
    const auto state = SavedState::fromJson(R"({"left":)" + tabs + R"(,"right":)" + tabs + "}");
    ASSERT_TRUE(state);
    std::set<Uuid> ids;
    for (const auto* panel : {&state->left, &state->right})
        for (const auto& tab : panel->tabs)
            ids.insert(tab.id);
    EXPECT_THAT(ids, SizeIs(8));
    EXPECT_EQ(state->left.tabs[0].id.text(), "f81d4fae-7dec-11d0-a765-00a0c91e6bf6");
}

TEST(SavedStateTest, theActiveIndexFollowsItsTabAndStaysInTheList) {
    const std::string tabs = R"("tabs":[{"path":"/a"},{"path":"bad"},{"path":"/b"},{"path":"/c"}])";
    struct Case {
        const char* active;
        std::size_t expected;
    };
    for (const auto& [active, expected] :
         {Case{"0", 0}, Case{"1", 1}, Case{"2", 1}, Case{"3", 2}, Case{"4", 2}, Case{"-1", 0},
          Case{"18446744073709551615", 2}, Case{"1.5", 0}, Case{"{}", 0}})
        EXPECT_EQ(leftOf("{" + tabs + R"(,"active":)" + active + "}").active, expected) << active;
    EXPECT_EQ(leftOf(R"({"tabs":[{"path":"/a"},{"path":"x"}],"active":1})").active, 0U);
    EXPECT_EQ(leftOf(R"({"tabs":[],"active":5})").active, 0U);
}

TEST(SavedStateTest, manyTabsAndDeepNestingAreNoMatter) {
    std::string tabs = R"({"path":"/0"})";
    for (int number = 1; number < 10'000; ++number)
        tabs += R"(,{"path":"/)" + std::to_string(number) + R"("})";
    const auto panel = leftOf(R"({"tabs":[)" + tabs + R"(],"active":9999})");
    EXPECT_THAT(panel.tabs, SizeIs(10'000));
    EXPECT_EQ(panel.active, 9999U);

    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    EXPECT_THAT(pathsOf(leftOf(R"({"tabs":[{"path":"/a","sort":)" + deep + "}]}")),
                ElementsAre("/a"));
}

} // namespace fennik::test
