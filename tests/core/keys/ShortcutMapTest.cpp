#include "core/keys/ShortcutMap.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum ShortcutMap::Replacing;

const KeyCombo f5{"f5"};
const KeyCombo f6{"f6"};
const KeyCombo optF5 = KeyCombo::parse("opt+f5");

ShortcutMap sample() {
    return {{{"copy", {f5}}, {"move", {f6, f5}}, {"pack", {}}}};
}

std::string nested(std::size_t depth, const std::string& open, const std::string& close) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += open;
    for (std::size_t i = 0; i < depth; ++i)
        text += close;
    return text;
}

} // namespace

TEST(ShortcutMapTest, looksUpInBothDirections) {
    const auto map = sample();
    EXPECT_THAT(map.combos("move"), ElementsAre(f6, f5));
    EXPECT_THAT(map.combos("nothing"), IsEmpty());
    EXPECT_EQ(map.owner(f6), "move");
    EXPECT_FALSE(map.owner(optF5));
    EXPECT_THAT(map.owners(f5), ElementsAre("copy", "move"));
    EXPECT_THAT(map.owners(f5, "copy"), ElementsAre("move"));
}

TEST(ShortcutMapTest, reportsEachCollisionOnce) {
    auto map = sample();
    map.bindings["pack"] = {optF5, optF5};
    EXPECT_THAT(map.collisions(), ElementsAre(ShortcutMap::Collision{f5, {"copy", "move"}}));
    map.remove(f5, "copy");
    EXPECT_THAT(map.collisions(), IsEmpty());
}

TEST(ShortcutMapTest, assigningAsksBeforeItTakes) {
    auto map = sample();
    EXPECT_FALSE(map.assign(f6, "copy", no));
    EXPECT_EQ(map, sample());

    EXPECT_TRUE(map.assign(f6, "copy", yes));
    EXPECT_THAT(map.combos("copy"), ElementsAre(f5, f6));
    EXPECT_THAT(map.combos("move"), ElementsAre(f5));

    EXPECT_TRUE(map.assign(optF5, "new", no));
    EXPECT_TRUE(map.assign(optF5, "new", no));
    EXPECT_THAT(map.combos("new"), ElementsAre(optF5));
}

TEST(ShortcutMapTest, assignsAndRemovesACombinationOfItsOwnLists) {
    ShortcutMap map{{{"a", {f5, f6, f5}}, {"b", {}}}};
    EXPECT_TRUE(map.assign(map.combos("a")[0], "b", yes));
    EXPECT_EQ(map, (ShortcutMap{{{"a", {f6}}, {"b", {f5}}}}));
    map.remove(map.combos("a")[0], "a");
    map.remove(f6, "absent");
    EXPECT_EQ(map, (ShortcutMap{{{"a", {}}, {"b", {f5}}}}));
}

TEST(ShortcutMapTest, defaultsNeverTakeWhatTheUserGaveToAnotherAction) {
    const ShortcutMap defaults{{{"copy", {f5, optF5}}, {"move", {f6}}, {"new", {optF5, f5}}}};
    ShortcutMap map{{{"copy", {}}, {"own", {f6, f5}}}};
    map.mergeMissingDefaults(defaults);
    EXPECT_EQ(map,
              (ShortcutMap{{{"copy", {}}, {"own", {f6, f5}}, {"move", {}}, {"new", {optF5}}}}));

    map.reset("new", defaults);
    map.reset("copy", defaults);
    EXPECT_THAT(map.combos("new"), ElementsAre(optF5));
    EXPECT_THAT(map.combos("copy"), IsEmpty());
    map.bindings.erase("own");
    map.bindings.erase("new");
    map.reset("copy", defaults);
    EXPECT_THAT(map.combos("copy"), ElementsAre(f5, optF5));
}

TEST(ShortcutMapTest, comesBackFromItsSavedForm) {
    const ShortcutMap map{{
        {"copy", {f5}},
        {"pack", {optF5}},
        {"none", {}},
        {"zítřejší akce\"", {KeyCombo::parse("cmd+ž"), KeyCombo{std::string("\0", 1)}}},
    }};
    EXPECT_EQ(ShortcutMap::fromJson(map.toJson().value()), map);
    EXPECT_EQ((ShortcutMap{{{"copy", {f5}}, {"pack", {optF5}}}}).toJson(),
              R"({"bindings":{"copy":[{"key":"f5","modifiers":0}],)"
              R"("pack":[{"key":"f5","modifiers":2}]}})");
    EXPECT_EQ(ShortcutMap::fromJson(ShortcutMap().toJson().value()), ShortcutMap());
}

TEST(ShortcutMapTest, textThatIsNotUtf8IsNotSaved) {
    EXPECT_FALSE((ShortcutMap{{{"copy", {KeyCombo{"\xFF"}}}}}).toJson());
    EXPECT_FALSE((ShortcutMap{{{"\xC0\x80", {}}}}).toJson());
}

TEST(ShortcutMapTest, keepsDuplicatesOfAnEditedFile) {
    const auto map = ShortcutMap::fromJson(
        R"({"bindings":{"a":[{"key":"x","modifiers":8},{"modifiers":8,"key":"x"}],)"
        R"("b":[{"key":"x","modifiers":8}]}})");
    ASSERT_TRUE(map);
    EXPECT_EQ(map->combos("a").size(), 2U);
    EXPECT_EQ(map->collisions().size(), 1U);
}

TEST(ShortcutMapTest, refusesEveryOtherFormAsAWhole) {
    const auto withCombo = [](const std::string& combo) {
        return R"({"bindings":{"copy":[{"key":"f5","modifiers":0},)" + combo + "]}}";
    };
    ASSERT_TRUE(ShortcutMap::fromJson(withCombo(R"({"key":"f6","modifiers":15})")));
    for (const auto* combo : {
             R"({"key":"f6"})",
             R"({"key":"f6","modifiers":0,"more":1})",
             R"({"key":"f6","modifier":0})",
             R"({"key":6,"modifiers":0})",
             R"({"key":null,"modifiers":0})",
             R"({"key":"f6","modifiers":"0"})",
             R"({"key":"f6","modifiers":16})",
             R"({"key":"f6","modifiers":-1})",
             R"({"key":"f6","modifiers":1.5})",
             R"({"key":"f6","modifiers":18446744073709551615})",
             R"({"key":"f6","modifiers":18446744073709551616})",
             R"({"key":"f6","modifiers":1e999})",
             R"({"key":"f6","modifiers":true})",
             "{\"key\":\"\xFF\",\"modifiers\":0}",
             R"({"key":"\ud800","modifiers":0})",
             R"("f6")",
             "[]",
             "null",
         })
        EXPECT_FALSE(ShortcutMap::fromJson(withCombo(combo))) << combo;

    constexpr std::size_t deep = 1'000'000;
    const auto whole = sample().toJson().value();
    for (const auto& text : {
             std::string(),
             std::string("null"),
             std::string("[]"),
             std::string("{}"),
             std::string(R"({"bindings":[]})"),
             std::string(R"({"bindings":{"copy":null}})"),
             std::string(R"({"bindings":{"copy":{}}})"),
             std::string(R"({"bindings":{},"version":2})"),
             whole.substr(0, whole.size() - 1),
             whole + "x",
             whole + std::string(1, '\0'),
             nested(deep, "[", "]"),
             nested(deep, "[", ""),
             nested(deep, R"({"bindings":)", "}"),
             withCombo(nested(deep, "[", "]")),
         })
        EXPECT_FALSE(ShortcutMap::fromJson(text)) << text.substr(0, 100);
}

} // namespace fennik::test
