#include "app/commands/ShortcutStore.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

using app::KAction;
using app::ShortcutStore;
using testing::ElementsAre;
using testing::IsEmpty;
using Assigned = ShortcutStore::Assigned;
using enum ShortcutMap::Replacing;
namespace KActions = app::KActions;

KeyCombo combo(std::string_view written) {
    return KeyCombo::parse(written);
}

/// A store over a text that takes the place of the settings.
struct Fixture {
    explicit Fixture(std::optional<std::string> text = std::nullopt) : saved(std::move(text)) {
        QObject::connect(&store, &ShortcutStore::changed, [this] { ++changes; });
    }

    std::optional<std::string> saved;
    int changes = 0;
    ShortcutStore store{KActions::defaultMapOffTheMac(), [this] { return saved; },
                        [this](std::string text) { saved = std::move(text); }};
};

} // namespace

TEST(ShortcutStoreTest, beginsWithTheDefaultsWhereNothingCanBeRead) {
    const auto defaults = KActions::defaultMapOffTheMac();
    EXPECT_EQ(Fixture().store.map(), defaults);

    const std::string broken = R"({"bindings":{"copy":)";
    Fixture damaged(broken);
    EXPECT_EQ(damaged.store.map(), defaults);
    EXPECT_EQ(damaged.saved, broken);
    damaged.store.resetAll();
    EXPECT_EQ(damaged.saved, defaults.toJson());
}

TEST(ShortcutStoreTest, keepsWhatTheUserMadeAndAddsNewActions) {
    auto old = KActions::defaultMap();
    old.bindings["copy"].clear();
    old.bindings.erase("operations");
    EXPECT_EQ(Fixture(old.toJson()).store.actionFor(combo("cmd+opt+p")), KAction::operations);

    old.bindings["edit"].push_back(combo("cmd+opt+p"));
    const auto text = old.toJson();
    const Fixture fixture(text);
    const auto& store = fixture.store;
    EXPECT_EQ(store.actionFor(combo("cmd+opt+p")), KAction::edit);
    EXPECT_THAT(store.map().combos("operations"), IsEmpty());
    EXPECT_FALSE(store.actionFor(combo("f5")));
    EXPECT_EQ(store.actionFor(combo("opt+f5")), KAction::pack);
    // Merging is no edit.
    EXPECT_EQ(fixture.saved, text);
}

TEST(ShortcutStoreTest, actionsOfAnotherVersionStayButDoNothing) {
    ShortcutMap old;
    old.bindings["aFuture"] = {combo("f5"), combo("cmd+opt+x")};
    old.bindings["copy"] = {combo("f5")};
    Fixture fixture(old.toJson());
    auto& store = fixture.store;
    EXPECT_EQ(store.actionFor(combo("f5")), KAction::copy);
    EXPECT_FALSE(store.actionFor(combo("cmd+opt+x")));
    EXPECT_THAT(store.actions(combo("cmd+opt+x")), IsEmpty());

    EXPECT_EQ(store.assign(combo("cmd+opt+x"), KAction::copy, no), Assigned::added);
    EXPECT_THAT(ShortcutMap::fromJson(*fixture.saved)->combos("aFuture"), ElementsAre(combo("f5")));
}

TEST(ShortcutStoreTest, everyEditIsSavedAndTold) {
    Fixture fixture;
    auto& store = fixture.store;
    const auto isSaved = [&] { return ShortcutMap::fromJson(*fixture.saved) == store.map(); };

    EXPECT_EQ(store.assign(combo("f2"), KAction::edit, yes), Assigned::added);
    EXPECT_EQ(store.actionFor(combo("f2")), KAction::edit);
    EXPECT_TRUE(isSaved());
    store.reset(KAction::rename);
    EXPECT_THAT(store.map().combos("rename"), ElementsAre(combo("shift+f6")));
    EXPECT_TRUE(isSaved());
    store.remove(combo("f2"), KAction::edit);
    EXPECT_THAT(store.map().combos("edit"), ElementsAre(combo("f4")));
    EXPECT_TRUE(isSaved());
    store.reset(KAction::rename);
    EXPECT_EQ(store.map(), KActions::defaultMapOffTheMac());
    EXPECT_TRUE(isSaved());
    EXPECT_EQ(fixture.changes, 4);
}

TEST(ShortcutStoreTest, refusalsChangeNothing) {
    Fixture fixture;
    auto& store = fixture.store;
    EXPECT_EQ(store.assign(combo("f5"), KAction::edit, no), Assigned::owned);
    EXPECT_EQ(store.assign(combo("cmd+q"), KAction::edit, yes), Assigned::reserved);
    EXPECT_EQ(store.assign(combo("f4"), KAction::edit, yes), Assigned::unchanged);
    EXPECT_EQ(store.map(), KActions::defaultMapOffTheMac());
    EXPECT_EQ(fixture.changes, 0);
    EXPECT_FALSE(fixture.saved);
}

TEST(ShortcutStoreTest, assigningSettlesACollision) {
    auto collided = KActions::defaultMap();
    collided.bindings["edit"].push_back(combo("f5"));
    Fixture fixture(collided.toJson());
    auto& store = fixture.store;
    EXPECT_THAT(store.actions(combo("f5")), ElementsAre(KAction::copy, KAction::edit));
    EXPECT_THAT(store.actions(combo("f5"), KAction::copy), ElementsAre(KAction::edit));
    EXPECT_EQ(store.assign(combo("f5"), KAction::edit, no), Assigned::owned);
    EXPECT_EQ(store.assign(combo("f5"), KAction::edit, yes), Assigned::added);
    EXPECT_THAT(store.map().collisions(), IsEmpty());
}

TEST(ShortcutStoreTest, aFunctionKeyStandsForItsAction) {
    Fixture fixture;
    auto& store = fixture.store;
    EXPECT_EQ(store.menuCombination(KAction::quickLook), combo("f3"));
    EXPECT_EQ(store.menuCombination(KAction::open), combo("return"));
    store.remove(combo("f4"), KAction::edit);
    EXPECT_FALSE(store.menuCombination(KAction::edit));
}

} // namespace fennik::test
