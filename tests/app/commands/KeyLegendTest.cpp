#include "app/commands/KeyLegend.h"
#include "app/commands/catalogue/KAction.h"

#include <gtest/gtest.h>

namespace fennik::test {

namespace {

const ShortcutMap defaults = app::KActions::defaultMapOffTheMac();

std::string legend(std::string_view written, const ShortcutMap& map = defaults) {
    return app::KeyLegend::legend(KeyCombo::parse(written), map);
}

} // namespace

TEST(KeyLegendTest, namesTheKeysInTheOrderOfOtherKeyboards) {
    EXPECT_EQ(legend("opt+cmd+c"), "Ctrl+Alt+C");
    EXPECT_EQ(legend("ctrl+opt+cmd+1"), "Ctrl+Alt+Super+1");
    EXPECT_EQ(legend("shift+opt+space"), "Alt+Shift+Mezerník");
    EXPECT_EQ(legend("shift+f6"), "Shift+F6");
    EXPECT_EQ(legend("opt+left"), "Alt+←");
    EXPECT_EQ(legend("cmd+pagedown"), "Ctrl+PgDn");
    EXPECT_EQ(legend("delete"), "Backspace");
    EXPECT_EQ(legend("forwarddelete"), "Delete");
    EXPECT_EQ(legend("help"), "Insert");
    EXPECT_EQ(legend("numminus"), "Num−");
    EXPECT_EQ(legend("cmd++"), "Ctrl++");
}

TEST(KeyLegendTest, controlIsCtrlAsLongAsThatWorks) {
    EXPECT_EQ(legend("ctrl+shift+tab"), "Ctrl+Shift+Tab");
    EXPECT_EQ(legend("ctrl+r"), "Ctrl+R");
    auto map = defaults;
    map.assign(KeyCombo::parse("cmd+r"), "edit", ShortcutMap::Replacing::yes);
    EXPECT_EQ(legend("ctrl+r", map), "Super+R");
}

TEST(KeyLegendTest, onlyAPressWithCtrlAloneIsOfferedOnceMore) {
    using app::KeyLegend::controlTwin;
    EXPECT_EQ(controlTwin(KeyCombo::parse("cmd+shift+d")), KeyCombo::parse("ctrl+shift+d"));
    EXPECT_FALSE(controlTwin(KeyCombo::parse("ctrl+d")));
    EXPECT_FALSE(controlTwin(KeyCombo::parse("ctrl+cmd+i")));
    EXPECT_FALSE(controlTwin(KeyCombo::parse("d")));
}

TEST(KeyLegendTest, sentencesSpeakOfTheKeysAtHand) {
    struct Case {
        std::string_view sentence;
        std::string_view shown;
    };
    for (const auto& [sentence, shown] : {
             Case{"⌘Z vrátí přesun, přejmenování, novou složku i Koš",
                  "Ctrl+Z vrátí přesun, přejmenování, novou složku i Koš"},
             Case{"2 skryté soubory ukáže ⇧⌘.", "2 skryté soubory ukáže Ctrl+Shift+."},
             Case{"Zatím nic – ⌃⇧D přidá tuto složku",
                  "Zatím nic – Ctrl+Shift+D přidá tuto složku"},
             Case{"↑↓ vybrat · ⇥ doplnit · ↩ otevřít", "↑↓ vybrat · Tab doplnit · Enter otevřít"},
             Case{"Držte ⌘ nebo ⌥ a klepněte", "Držte ⌘ nebo ⌥ a klepněte"},
             Case{"Žádná zkratka", "Žádná zkratka"},
         })
        EXPECT_EQ(app::KeyLegend::withLegends(sentence, defaults), shown);
}

} // namespace fennik::test
