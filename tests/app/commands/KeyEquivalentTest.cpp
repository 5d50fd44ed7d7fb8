#include "app/commands/KeyEquivalent.h"

#include <gtest/gtest.h>

namespace fennik::test {

using app::KeyEquivalent;

TEST(KeyEquivalentTest, namesTheKeyAndCarriesTheModifiersOver) {
    using enum KeyEquivalent::NamedKey;
    struct Case {
        std::string_view written;
        std::variant<char32_t, KeyEquivalent::NamedKey> key;
    };
    for (const auto& [written, key] : {
             Case{"f1", U'\uF704'},
             Case{"opt+f15", U'\uF712'},
             Case{"cmd+t", U't'},
             Case{"cmd+shift+.", U'.'},
             Case{"ctrl+ř", U'ř'},
             Case{"ctrl+tab", tab},
             Case{"opt+cmd+return", enter},
             Case{"ctrl+cmd+delete", backspace},
             Case{"cmd+pageup", pageUp},
         }) {
        const auto combo = KeyCombo::parse(written);
        EXPECT_EQ(KeyEquivalent::of(combo), (KeyEquivalent{key, combo.modifiers})) << written;
    }
}

TEST(KeyEquivalentTest, leavesWhatAFieldNeedsAndWhatMenusDoNotHave) {
    for (const auto* written : {"space", "tab", "cmd+c", "cmd+shift+v", "f0", "f16", "cmd+help",
                                "cmd+enter", "cmd+numplus", "cmd+", "cmd+unknown"})
        EXPECT_FALSE(KeyEquivalent::of(KeyCombo::parse(written))) << written;
}

} // namespace fennik::test
