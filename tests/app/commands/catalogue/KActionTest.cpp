#include "app/commands/catalogue/KAction.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

namespace fennik::test {

namespace {

using app::KAction;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
namespace KActions = app::KActions;

std::vector<std::string> displays(std::span<const KeyCombo> combos) {
    std::vector<std::string> result;
    for (const auto& combo : combos)
        result.push_back(combo.displayForm());
    return result;
}

std::vector<std::string> displays(const ShortcutMap& map, KAction action) {
    return displays(map.combos(KActions::identifier(action)));
}

} // namespace

TEST(KActionTest, isKnownByItsIdentifier) {
    std::set<std::string_view> identifiers;
    for (const auto action : KActions::all()) {
        identifiers.insert(KActions::identifier(action));
        EXPECT_EQ(KActions::fromIdentifier(KActions::identifier(action)), action);
    }
    EXPECT_EQ(identifiers.size(), 52U);
    EXPECT_EQ(KActions::fromIdentifier("sortExt"), KAction::sortExt);
    for (const auto* other : {"SortExt", "delete", "", "sortExt "})
        EXPECT_FALSE(KActions::fromIdentifier(other)) << other;
}

TEST(KActionTest, hasAShortTitleOrIsCalledByItsTitle) {
    EXPECT_EQ(KActions::shortTitle(KAction::trash), "Do Koše");
    EXPECT_EQ(KActions::title(KAction::trash), "Přesunout do Koše");
    EXPECT_EQ(KActions::shortTitle(KAction::rename), "Přejmenovat");
    EXPECT_EQ(KActions::shortTitle(KAction::info), "Informace");
}

TEST(KActionTest, groupsReadAsTheirTitlesSay) {
    std::map<std::string_view, int> sizes;
    for (const auto action : KActions::all())
        ++sizes[KActions::title(KActions::group(action))];
    EXPECT_THAT(sizes,
                ElementsAre(Pair("Navigace", 10), Pair("Nástroje", 4), Pair("Panely a záložky", 12),
                            Pair("Soubory", 16), Pair("Výběr", 10)));
    EXPECT_EQ(KActions::group(KAction::escape), KActions::Group::selection);
    EXPECT_EQ(KActions::group(KAction::markAndSize), KActions::Group::selection);
    EXPECT_EQ(KActions::group(KAction::toggleHidden), KActions::Group::tabs);
    EXPECT_EQ(KActions::group(KAction::sortDate), KActions::Group::tabs);
}

TEST(KActionTest, noTwoActionsShareACombinationAndNoneIsReserved) {
    const auto map = KActions::defaultMapOffTheMac();
    EXPECT_THAT(map.collisions(), IsEmpty());
    std::size_t count = 0;
    for (const auto& [action, combos] : map.bindings) {
        count += combos.size();
        for (const auto& combo : combos)
            EXPECT_FALSE(combo.reservedTitle()) << action << " " << combo.displayForm();
    }
    EXPECT_EQ(map.bindings.size(), 52U);
    EXPECT_EQ(count, 62U + 18U);
}

TEST(KActionTest, secondCombinationsFollowTheDefaults) {
    const auto mac = KActions::defaultMap();
    EXPECT_THAT(displays(mac, KAction::quickLook), ElementsAre("Mezerník", "F3"));
    EXPECT_THAT(displays(mac, KAction::operations), ElementsAre("⌥⌘P"));
    EXPECT_THAT(displays(mac, KAction::trash), ElementsAre("F8", "⌘⌫"));

    const auto elsewhere = KActions::defaultMapOffTheMac();
    EXPECT_THAT(displays(elsewhere, KAction::trash), ElementsAre("F8", "⌘⌫", "⌦"));
    EXPECT_THAT(displays(elsewhere, KAction::rename), ElementsAre("⇧F6", "F2"));
    EXPECT_THAT(displays(elsewhere, KAction::sortName), ElementsAre("⌃⌥⌘1", "⌥⌘1"));
    EXPECT_THAT(displays(elsewhere, KAction::copy), ElementsAre("F5"));
}

TEST(KActionTest, resettingNeverTakesASecondCombinationFromItsNewOwner) {
    const auto defaults = KActions::defaultMapOffTheMac();
    auto map = defaults;
    map.assign({"f2"}, "edit", ShortcutMap::Replacing::yes);
    map.reset("rename", defaults);
    EXPECT_THAT(displays(map, KAction::rename), ElementsAre("⇧F6"));
    map.reset("edit", defaults);
    map.reset("rename", defaults);
    EXPECT_EQ(map, defaults);
}

} // namespace fennik::test
