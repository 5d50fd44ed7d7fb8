#include "app/commands/FennikCommands.h"

#include <gtest/gtest.h>

#include <map>

namespace fennik::test {

using app::KAction;
namespace FennikCommands = app::FennikCommands;
namespace KActions = app::KActions;

TEST(FennikCommandsTest, everyActionStandsInAMenu) {
    std::map<KAction, int> places;
    for (const auto& menu : FennikCommands::menuBar())
        for (const auto& section : menu.sections)
            for (const auto& item : section)
                if (const auto* action = std::get_if<KAction>(&item))
                    ++places[*action];
    for (const auto action : KActions::all())
        // Marking belongs with the marks as well as with the sizes.
        EXPECT_EQ(places[action], action == KAction::markAndSize ? 2 : 1)
            << KActions::identifier(action);
}

TEST(FennikCommandsTest, itemsHaveTheFirstCombinationThatLeavesFieldsAlone) {
    const auto menuKey = [](KAction action, const ShortcutMap& map) {
        const auto combo = FennikCommands::menuEquivalent(action, map);
        return combo ? combo->displayForm() : "";
    };
    const auto mac = KActions::defaultMap();
    EXPECT_EQ(menuKey(KAction::quickLook, mac), "F3");
    EXPECT_EQ(menuKey(KAction::focusPath, mac), "⌘L");
    EXPECT_EQ(menuKey(KAction::home, mac), "⇧⌘H");
    EXPECT_EQ(menuKey(KAction::pathFromClipboard, mac), "");
    EXPECT_EQ(menuKey(KAction::switchPanel, mac), "");
    EXPECT_EQ(menuKey(KAction::copyToClipboard, mac), "");
    EXPECT_EQ(menuKey(KAction::parent, mac), "");
    EXPECT_EQ(menuKey(KAction::parent, KActions::defaultMapOffTheMac()), "⌥↑");
}

TEST(FennikCommandsTest, anActionTakesTheFixedKeyOfACommand) {
    using app::WindowCommand;
    auto map = KActions::defaultMapOffTheMac();
    const auto key = KeyCombo::parse("f1");
    EXPECT_EQ(FennikCommands::fixedCombo(WindowCommand::shortcuts, map), key);
    EXPECT_EQ(FennikCommands::commandOf(key, map), WindowCommand::shortcuts);
    map.assign(key, KActions::identifier(KAction::info), ShortcutMap::Replacing::yes);
    EXPECT_EQ(FennikCommands::fixedCombo(WindowCommand::shortcuts, map), std::nullopt);
    EXPECT_EQ(FennikCommands::commandOf(key, map), std::nullopt);
}

} // namespace fennik::test
