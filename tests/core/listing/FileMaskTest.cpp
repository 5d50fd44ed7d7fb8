#include "core/listing/FileMask.h"

#include "core/base/Utf8.h"

#include <gtest/gtest.h>

#include <fnmatch.h>
#include <random>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace fennik::test {

namespace {

bool matches(std::string_view mask, std::string_view name, FileKind kind = FileKind::file) {
    return FileMask(mask).matches({.name = name, .kind = kind});
}

std::string randomText(std::mt19937& random, const std::vector<std::string>& parts) {
    std::string text;
    for (auto length = 1 + random() % 8; length > 0; --length)
        text += parts[random() % parts.size()];
    return text;
}

/// `text` with one ASCII character of the same nature for each of the others in the test below.
std::string inAscii(std::string text) {
    for (const auto& [from, to] : {std::pair{"č", "x"}, {"ž", "y"}, {"😀", "~"}}) {
        for (auto at = text.find(from); at != std::string::npos; at = text.find(from))
            text.replace(at, std::string_view(from).size(), to);
    }
    return text;
}

} // namespace

TEST(FileMaskTest, readsSeveralMasksWithoutRegardToCase) {
    for (const auto* const mask : {"*.JPG; *.png", ";;\t*.jpg\u00A0; ;*.PnG;"}) {
        EXPECT_TRUE(matches(mask, "photo.jpg")) << mask;
        EXPECT_TRUE(matches(mask, "icon.PNG")) << mask;
        EXPECT_FALSE(matches(mask, "notes.txt")) << mask;
    }
    EXPECT_TRUE(matches("*.*", "README"));
    EXPECT_FALSE(matches("a*.*", "abc"));
    EXPECT_TRUE(matches("ŽLUŤ?", "žluťČ"));
    EXPECT_TRUE(matches("*Σ*", "ΟΔΟΣ"));
    EXPECT_TRUE(matches("[Č-Š].txt", "Ř.TXT"));
    EXPECT_FALSE(FileMask("*").matches({.name = "..", .isParentLink = true}));
    for (const auto* const nothing : {"", ";", " ; \n", "/"})
        EXPECT_FALSE(matches(nothing, "a", FileKind::directory)) << nothing;
}

TEST(FileMaskTest, aMaskWithASeparatorAtItsEndIsForFolders) {
    EXPECT_TRUE(matches("build*/", "build-arm", FileKind::directory));
    EXPECT_FALSE(matches("build*/", "build.log"));
    EXPECT_TRUE(matches("*.*/", "x", FileKind::directory));
    EXPECT_FALSE(matches("*/", "p.app", FileKind::package));
    EXPECT_TRUE(
        FileMask("*/").matches({.name = "l", .kind = FileKind::symlink, .linksToDirectory = true}));
}

TEST(FileMaskTest, namesOfAnyBytesCanBeMatched) {
    EXPECT_TRUE(matches("*", "\xFF"));
    EXPECT_TRUE(matches("*.txt", "\xC4\xFF\x80.TXT"));
    EXPECT_TRUE(matches("a?č", "a\xFFč"));
    EXPECT_FALSE(matches(std::string("a\0", 2), "a"));
    EXPECT_TRUE(matches("*z", std::string(60'000, 'a') + "Z"));
}

TEST(FileMaskTest, everyScalarIsLoweredInFull) {
    for (char32_t scalar = 128; scalar <= 0x10FFFF; ++scalar) {
        if (scalar >= 0xD800 && scalar <= 0xDFFF)
            continue;
        std::string name;
        Utf8::append(name, scalar);
        std::string mask;
        icu::UnicodeString::fromUTF8(name).toLower(icu::Locale::getRoot()).toUTF8String(mask);
        ASSERT_TRUE(matches("x" + mask + "x", "x" + name + "x")) << std::hex << +scalar;
    }
}

TEST(FileMaskTest, hostileMasksEndSoon) {
    const std::string name(255, 'a');
    std::string stars;
    std::string questions = "*";
    for (int i = 0; i < 2500; ++i)
        stars += "*a*b";
    for (int i = 0; i < 120; ++i)
        questions += i % 2 == 0 ? "?*" : "[!b]*";
    for (const auto& mask : {stars, questions + "b", std::string(10'000, '['),
                             std::string(10'000, '*') + "b", std::string(10'000, '?'),
                             "[" + std::string(10'000, 'b'), "*" + std::string(127, '?') + "b*"})
        EXPECT_FALSE(matches(mask, name));
    EXPECT_TRUE(matches(questions, name));
}

TEST(NamePatternTest, matchesWhatTheSystemMatches) {
    std::mt19937 random(3);
    const std::vector<std::string> nameParts{"a", "b", "č", "ž",  "-", "]", "[", "!",
                                             "^", ".", "1", "\\", "=", ":", "😀"};
    const std::vector<std::string> sets{
        "[ab]",   "[!a]",        "[^č]",          "[a-c]",     "[]a]",      "[!]-]",
        "[a-]",   "[[:alpha:]]", "[![:digit:]b]", "[b-a]",     "[[=č=]]",   "[[.-.]a]",
        "[\\]a]", "[--b]",       "[[.a.]-b]",     "[\\a-\\b]", "[a-[.c.]]", "[[:alp",
    };
    std::vector<std::string> maskParts = nameParts;
    for (int i = 0; i < 12; ++i)
        maskParts.emplace_back(i % 3 == 0 ? "?" : "*");
    maskParts.insert(maskParts.end(), sets.begin(), sets.end());
    int matched = 0;
    for (int i = 0; i < 300'000; ++i) {
        const auto mask = randomText(random, maskParts);
        const auto name = randomText(random, nameParts);
        // The system itself tries bytes where characters do not match.
        const bool expected = fnmatch(inAscii(mask).c_str(), inAscii(name).c_str(), 0) == 0;
        matched += expected ? 1 : 0;
        // This one mask is not read as a pattern.
        if (mask != "*.*") {
            ASSERT_EQ(matches(mask, name), expected) << mask << " on " << name;
        }
    }
    EXPECT_GT(matched, 10'000);
}

} // namespace fennik::test
