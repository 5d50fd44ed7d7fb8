#include "core/keys/KeyCombo.h"
#include "core/keys/KeyNames.h"

#include <gmock/gmock.h>

#include <set>

namespace fennik::test {

namespace {

using Modifier = KeyCombo::Modifier;

std::string display(std::string_view written) {
    return KeyCombo::parse(written).displayForm();
}

bool typed(std::string_view written) {
    return KeyCombo::parse(written).collidesWithTyping();
}

} // namespace

TEST(KeyComboTest, readsTheWrittenForm) {
    struct Case {
        std::string_view written;
        KeyCombo combo;
    };
    for (const auto& [written, combo] : {
             Case{"cmd++", {"+", {Modifier::command}}},
             Case{"++", {"+"}},
             Case{"+", {""}},
             Case{"", {""}},
             Case{"cmd+", {"", {Modifier::command}}},
             Case{"CMD+Shift+G", {"g", {Modifier::command, Modifier::shift}}},
             Case{"control+OPTION+command+1",
                  {"1", {Modifier::control, Modifier::option, Modifier::command}}},
             Case{"alt+Ž", {"ž", {Modifier::option}}},
             Case{"hyper+x", {"x"}},
             Case{"f5+x", {"x"}},
         })
        EXPECT_EQ(KeyCombo::parse(written), combo) << written;
}

TEST(KeyComboTest, modifiersKeepTheValuesOfTheSavedForm) {
    EXPECT_EQ(KeyCombo::parse("ctrl+x").modifiers.rawValue(), 1);
    EXPECT_EQ(KeyCombo::parse("opt+x").modifiers.rawValue(), 2);
    EXPECT_EQ(KeyCombo::parse("shift+x").modifiers.rawValue(), 4);
    EXPECT_EQ(KeyCombo::parse("cmd+x").modifiers.rawValue(), 8);
    EXPECT_FALSE(KeyCombo::Modifiers::fromRawValue(16));
}

TEST(KeyComboTest, displaysModifiersInTheirOrderAndNamesAsSymbols) {
    EXPECT_EQ(display("cmd+shift+opt+ctrl+h"), "⌃⌥⇧⌘H");
    EXPECT_EQ(display("opt+f5"), "⌥F5");
    EXPECT_EQ(display("opt+space"), "⌥Mezerník");
    EXPECT_EQ(display("help"), "Insert");
    EXPECT_EQ(display("numminus"), "Num−");
    EXPECT_EQ(display("cmd+,"), "⌘,");
    EXPECT_EQ(display("č"), "Č");
    EXPECT_EQ(display(""), "");
}

TEST(KeyComboTest, findsACombinationAtTheBeginningOfAText) {
    struct Case {
        std::string_view written;
        std::string_view rest;
    };
    for (const auto& [written, rest] : {
             Case{"cmd+z", " vrátí přesun"},
             Case{"cmd+shift+.", ""},
             Case{"cmd++", "."},
             Case{"opt+f5", " a ⌥F9"},
             Case{"cmd+f", "x"},
             Case{"opt+space", "em"},
             Case{"ctrl+ž", "⌘"},
             Case{"delete", "⌫"},
             Case{"cmd+help", "."},
         }) {
        const auto combo = KeyCombo::parse(written);
        const auto text = combo.displayForm();
        const auto found = leadingCombo(text + std::string(rest));
        ASSERT_TRUE(found) << written;
        EXPECT_EQ(found->combo, combo) << written;
        EXPECT_EQ(found->length, text.size()) << written;
    }
    for (const auto* text : {"", "F5", "Zpět", " ⌘Z", "⌘", "⌘ a ⌥", "(⌘Z)"})
        EXPECT_FALSE(leadingCombo(text)) << text;
}

TEST(KeyComboTest, functionKeysHaveANumber) {
    for (const auto* key : {"f0", "f1", "f15", "f99"})
        EXPECT_TRUE(KeyCombo{key}.isFunctionKey()) << key;
    for (const auto* key : {"f", "", "fa", "f1a", "f-1", "f 1", "1", "forwarddelete"})
        EXPECT_FALSE(KeyCombo{key}.isFunctionKey()) << key;
}

TEST(KeyComboTest, knowsWhatATextFieldNeeds) {
    for (const auto* written :
         {"a", "shift+a", "space", "escape", "numplus", "cmd+a", "cmd+z", "cmd+delete", "cmd+up",
          "cmd+shift+a", "cmd+shift+v", "opt+left", "opt+shift+delete"})
        EXPECT_TRUE(typed(written)) << written;
    for (const auto* written : {"f5", "shift+f6", "cmd+t", "cmd+opt+c", "ctrl+a", "opt+up", "opt+a",
                                "ctrl+cmd+z", "opt+f5", "cmd+shift+h"})
        EXPECT_FALSE(typed(written)) << written;
}

TEST(KeyComboTest, whatTheSystemHasIsReserved) {
    EXPECT_EQ(KeyCombo::parse("cmd+q").reservedTitle(), "Ukončit appku");
    EXPECT_EQ(KeyCombo::parse("opt+cmd+escape").reservedTitle(), "Vynutit ukončení (systém)");
    EXPECT_FALSE(KeyCombo::parse("cmd+shift+q").reservedTitle());
    EXPECT_FALSE(KeyCombo::parse("q").reservedTitle());
}

TEST(KeyComboTest, placesHaveOneNameAndOneCodeEach) {
    std::set<std::string_view> names;
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto name = KeyNames::nameOf(static_cast<std::uint16_t>(code));
        if (!name)
            continue;
        EXPECT_TRUE(names.insert(*name).second) << *name;
        EXPECT_EQ(KeyNames::keyCodeOf(*name), code);
    }
    EXPECT_EQ(names.size(), 44U);
    EXPECT_EQ(KeyNames::nameOf(51), "delete");
    EXPECT_EQ(KeyNames::nameOf(22), "6");
    EXPECT_EQ(KeyNames::keyCodeOf("f9"), 101);
    EXPECT_FALSE(KeyNames::keyCodeOf("a"));
}

TEST(KeyComboTest, aPressCountsByPlaceThenByCharacter) {
    constexpr std::uint32_t capsLock = 0x10000;
    // The digit key types "+" on a Czech keyboard, and "!" with Shift on another.
    EXPECT_EQ(KeyCombo::fromEvent(
                  {.keyCode = 18, .modifierFlags = KeyEvent::optionFlag, .characters = "+"}),
              KeyCombo::parse("opt+1"));
    EXPECT_EQ(
        KeyCombo::fromEvent({.modifierFlags = KeyEvent::commandFlag | capsLock, .characters = "Z"}),
        KeyCombo::parse("cmd+z"));
    EXPECT_EQ(KeyCombo::fromEvent({.modifierFlags = KeyEvent::shiftFlag | KeyEvent::controlFlag,
                                   .characters = "Ěx"}),
              KeyCombo::parse("ctrl+shift+ě"));
    EXPECT_EQ(KeyCombo::fromEvent({.characters = "\xFF"}), KeyCombo{"\uFFFD"});
    EXPECT_EQ(KeyCombo::fromEvent({.keyCode = 114}), KeyCombo{"help"});
    EXPECT_FALSE(KeyCombo::fromEvent({.keyCode = 0}));
    constexpr int keyUp = 11;
    EXPECT_FALSE(KeyCombo::fromEvent({.type = keyUp, .keyCode = 18, .characters = "1"}));
}

} // namespace fennik::test
