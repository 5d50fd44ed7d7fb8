#include "core/base/FoldedText.h"

#include <gtest/gtest.h>

namespace fennik::test {

TEST(FoldedTextTest, aPrefixIsMeasuredInTheBytesOfTheName) {
    const auto length = [](std::string_view name, std::string_view typed) {
        return lengthOfPrefix(name, foldedText(typed));
    };
    EXPECT_EQ(length("Směrnice", "SMĚ"), 4U);
    EXPECT_EQ(length("Šmídovi", "sm"), 3U);
    EXPECT_EQ(length("S\u030Cmídovi", "š"), 3U);
    EXPECT_EQ(length("Šmídovi", ""), 0U);
    EXPECT_EQ(length("Straße", "strasse"), 7U);
    EXPECT_EQ(length("\xFFx", "\xFE"), 1U);
    EXPECT_EQ(length("sm", "sm"), 2U);
    EXPECT_EQ(length("sm", "smi"), std::nullopt);
    EXPECT_EQ(length("Dodatek", "sm"), std::nullopt);
    EXPECT_EQ(length("", "s"), std::nullopt);
}

} // namespace fennik::test
