#include "core/base/CzechText.h"
#include "core/base/DisplayText.h"
#include "core/base/Utf8.h"

#include <gmock/gmock.h>

namespace fennik::test {

namespace {

std::u32string decoded(std::string_view bytes) {
    std::u32string scalars;
    for (std::size_t position = 0; position < bytes.size();)
        scalars += Utf8::next(bytes, position);
    return scalars;
}

} // namespace

TEST(Utf8Test, decodesAndEncodesTheBordersOfEveryLength) {
    const std::u32string borders =
        U"\u007F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF";
    std::string bytes;
    for (const auto scalar : borders)
        Utf8::append(bytes, scalar);
    EXPECT_EQ(decoded(bytes), borders);
    EXPECT_TRUE(Utf8::isValid(bytes));
}

TEST(Utf8Test, everyInvalidByteIsOneReplacement) {
    struct Case {
        std::string_view bytes;
        std::u32string_view scalars;
    };
    for (const auto& [bytes, scalars] : {
             Case{"a\xFF"
                  "b",
                  U"a\uFFFDb"},
             Case{"\xC0\x80", U"\uFFFD\uFFFD"},                     // overlong
             Case{"\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD"},           // surrogate
             Case{"\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD"}, // above the last scalar
             Case{"\xC4", U"\uFFFD"},                               // cut short
             Case{"\xE2\x82", U"\uFFFD\uFFFD"},
             Case{"\xC4"
                  "c",
                  U"\uFFFDc"},
         }) {
        EXPECT_EQ(decoded(bytes), scalars);
        EXPECT_FALSE(Utf8::isValid(bytes));
    }
}

TEST(DisplayTextTest, showsWhatCannotBeSeen) {
    EXPECT_EQ(displayText("a\nb\tc\x7F\xFF"), "a↵b⇥c\uFFFD\uFFFD");
    EXPECT_EQ(displayText("žluťoučký kůň"), "žluťoučký kůň");
    // An override would show this name as "obrazgpj.exe" turned round.
    std::string overridden = "obraz";
    Utf8::append(overridden, 0x202E);
    EXPECT_EQ(displayText(overridden + "exe.jpg"), "obraz\uFFFDexe.jpg");
    EXPECT_EQ(displayText("a\u0085b\u2028c"), "a\uFFFDb\uFFFDc");
}

TEST(CzechTextTest, quotesAndCounts) {
    EXPECT_EQ(quoted("x\ny"), "„x↵y“");
    constexpr PluralForms items{"položka", "položky", "položek"};
    EXPECT_EQ(pluralForm(0, items), "položek");
    EXPECT_EQ(pluralForm(1, items), "položka");
    EXPECT_EQ(pluralForm(2, items), "položky");
    EXPECT_EQ(pluralForm(4, items), "položky");
    EXPECT_EQ(pluralForm(5, items), "položek");
    EXPECT_EQ(pluralForm(22, items), "položek");
}

} // namespace fennik::test
