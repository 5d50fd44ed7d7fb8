#include "core/listing/NameKey.h"

#include "core/base/Utf8.h"

#include <gmock/gmock.h>

#include <random>

namespace fennik::test {

namespace {

using testing::ElementsAre;

std::string utf8(char32_t scalar) {
    std::string bytes;
    Utf8::append(bytes, scalar);
    return bytes;
}

std::string bytesOf(std::string_view name) {
    std::string bytes;
    NameKey::appendBytes(name, bytes);
    return bytes;
}

/// Both forms of the key put two names in the same order.
void expectSameOrder(std::string_view a, std::string_view b) {
    ASSERT_EQ(NameKey::make(a) <=> NameKey::make(b), bytesOf(a) <=> bytesOf(b)) << a << " | " << b;
}

} // namespace

TEST(NameKeyTest, scalarsHaveTheirPlaces) {
    EXPECT_EQ(NameKey::ofScalar(U'A'), NameKey::ofScalar(U'a'));
    EXPECT_EQ(NameKey::ofScalar(U'a'), 388U);
    EXPECT_EQ(NameKey::ofScalar(U'é'), NameKey::ofScalar(U'e'));
    EXPECT_EQ(NameKey::ofScalar(U'Ů'), NameKey::ofScalar(U'u'));
    EXPECT_EQ(NameKey::ofScalar(U'č'), 398U);
    EXPECT_EQ(NameKey::ofScalar(U'Ř'), 458U);
    EXPECT_EQ(NameKey::ofScalar(U'š'), 462U);
    EXPECT_EQ(NameKey::ofScalar(U'Ž'), 490U);
    EXPECT_EQ(NameKey::ofScalar(U'ß'), 461U);
    EXPECT_EQ(NameKey::ofScalar(U'ł'), U'ł' * 4U + 1);
    EXPECT_EQ(NameKey::ofScalar(U'\uFFFD'), 0xFFFDU * 4 + 1);
    EXPECT_EQ(NameKey::ofScalar(U'\u0301'), 0x301U * 4 + 1); // folds to nothing
}

TEST(NameKeyTest, numbersCompareByValue) {
    EXPECT_THAT(NameKey::make("a007"), ElementsAre(388, 192, 1, 7));
    EXPECT_THAT(NameKey::make("000"), ElementsAre(192, 1, 0));
    EXPECT_THAT(NameKey::make("1a20"), ElementsAre(192, 1, 1, 388, 192, 2, 2, 0));
    EXPECT_THAT(NameKey::make(""), ElementsAre());
    EXPECT_THAT(NameKey::make("\xC4"), ElementsAre(0xFFFD * 4 + 1));
}

TEST(NameKeyTest, byteFormHoldsTheOrderOfAllScalars) {
    std::vector<std::pair<std::uint32_t, std::string>> keys;
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if ((scalar >= 0xD800 && scalar <= 0xDFFF) || (scalar >= U'0' && scalar <= U'9'))
            continue;
        keys.emplace_back(NameKey::ofScalar(scalar), bytesOf(utf8(scalar)));
        ASSERT_EQ(keys.back().second.find('\0'), keys.back().second.size() - 1);
    }
    std::ranges::sort(keys);
    for (std::size_t i = 1; i < keys.size(); ++i) {
        const auto& [keyBefore, bytesBefore] = keys[i - 1];
        const auto& [key, bytes] = keys[i];
        ASSERT_EQ(keyBefore <=> key, bytesBefore <=> bytes) << keyBefore << ' ' << key;
    }
}

TEST(NameKeyTest, byteFormHoldsTheOrderOfRandomNames) {
    std::mt19937 random(2026);
    const std::vector<std::string> parts{"a",  "A",    "á",      "č", "c", "ch", "0", "00",   "7",
                                         "12", "9",    " ",      "-", "_", ".",  "ß", "ﬁ",    "≠",
                                         "日", "\xFF", "\u0301", "ř", "z", "Ž",  "~", "\x01", "😀"};
    const auto name = [&] {
        std::string text;
        for (auto length = random() % 7; length > 0; --length)
            text += parts[random() % parts.size()];
        return text;
    };
    for (int i = 0; i < 200'000; ++i)
        expectSameOrder(name(), name());
    const std::string digits(300, '5');
    expectSameOrder(digits, digits + "5");
    expectSameOrder(digits, std::string(253, '9'));
    expectSameOrder(std::string(253, '9'), std::string(254, '1'));
}

} // namespace fennik::test
