#include "app/model/FileHead.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <string_view>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::string_literals;
using testing::AllOf;
using testing::Field;
using testing::Optional;
using testing::VariantWith;

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

PreviewContent shown(std::string_view bytes, bool isCut = false) {
    return FileHead::content(bytesOf(bytes), isCut);
}

auto isText(const std::string& text, const std::string& charset) {
    return VariantWith<PreviewText>(
        AllOf(Field(&PreviewText::text, text), Field(&PreviewText::charset, charset)));
}

/// Each character in two bytes, the less significant one first or last.
std::string inUtf16(std::u16string_view text, bool littleEndian) {
    std::string bytes;
    for (const auto unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += littleEndian ? low : high;
        bytes += littleEndian ? high : low;
    }
    return bytes;
}

} // namespace

TEST(FileHeadTest, textsAreReadInTheCharacterSetsThatPeopleUse) {
    const auto czech = "Žluťoučký kůň\npěl ďábelské ódy"s;
    EXPECT_THAT(shown(czech), isText(czech, "UTF-8"));
    EXPECT_THAT(shown("\xEF\xBB\xBF" + czech), isText(czech, "UTF-8"));
    EXPECT_THAT(shown("\x8Elu\x9Dou\xE8k\xFD k\xF9\xF2\np\xECl \xEF\xE1"
                      "belsk\xE9 \xF3"
                      "dy"),
                isText(czech, "windows-1250"));
    EXPECT_THAT(shown("\xAElu\xBBou\xE8k\xFD k\xF9\xF2\np\xECl \xEF\xE1"
                      "belsk\xE9 \xF3"
                      "dy"),
                isText(czech, "ISO-8859-2"));
    const auto wide = u"Žluťoučký kůň\npěl ďábelské ódy a k tomu \U0001F40E"s;
    const auto read = czech + " a k tomu \U0001F40E";
    EXPECT_THAT(shown("\xFF\xFE" + inUtf16(wide, true)), isText(read, "UTF-16"));
    EXPECT_THAT(shown("\xFE\xFF" + inUtf16(wide, false)), isText(read, "UTF-16"));
    EXPECT_THAT(shown(inUtf16(u"<?xml version=\"1.0\"?>", true)),
                isText("<?xml version=\"1.0\"?>", "UTF-16"));
    EXPECT_THAT(shown(""), isText("", "UTF-8"));
}

TEST(FileHeadTest, whatATextHasOfControlsAndEndlessLinesDoesNoHarm) {
    EXPECT_THAT(shown("one\r\ntwo\rthree\n\tfour"), isText("one\ntwo\nthree\n\tfour", "UTF-8"));
    EXPECT_THAT(shown(std::string(300, 'x') + '\0' + "\x1B[0m\n"),
                isText(std::string(300, 'x') + "\u2400\u241B[0m\n", "UTF-8"));
    const std::string endless(10'000, 'x');
    const auto text = std::get<PreviewText>(shown(endless)).text;
    EXPECT_LT(text.find('\n'), 5000U);
    EXPECT_EQ(std::ranges::count(text, 'x'), 10'000);
}

TEST(FileHeadTest, aCharacterThatIsCutOffDoesNotSpoilAText) {
    EXPECT_THAT(shown("k\xC5\xAF\xC5", true), isText("ků", "UTF-8"));
    EXPECT_THAT(shown("k\xC5\xAF\xC5", false), testing::Not(isText("ků", "UTF-8")));
}

TEST(FileHeadTest, whatIsNoTextIsShownAsBytes) {
    std::mt19937 random(7); // NOLINT: the same bytes each time
    std::string noise(std::size_t{1} << 16, '\0');
    for (auto& byte : noise)
        byte = static_cast<char>(random());
    const auto bytes = std::get<PreviewBytes>(shown(noise));
    EXPECT_EQ(bytes.bytes.size(), FileHead::longestBytes);
    EXPECT_TRUE(bytes.isCut);
    EXPECT_THAT(shown("\x7F"
                      "ELF\2\1\1\0\0\0\0\0\0\0\0\0"s),
                VariantWith<PreviewBytes>(Field(&PreviewBytes::isCut, false)));
}

TEST(FileHeadTest, formatsAreKnownByTheirSigns) {
    const auto kind = [](std::string_view head) { return FileHead::decodedKind(bytesOf(head)); };
    EXPECT_THAT(kind("\x89PNG\r\n\x1A\n...."), Optional(DecodedKind::picture));
    EXPECT_THAT(kind("<?xml version='1.0'?>\n<svg xmlns='…'/>"), Optional(DecodedKind::picture));
    EXPECT_THAT(kind("BM\x36\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0"s), Optional(DecodedKind::picture));
    EXPECT_THAT(kind("%PDF-1.7"), Optional(DecodedKind::document));
    EXPECT_THAT(kind("RIFF....WAVEfmt "), Optional(DecodedKind::media));
    EXPECT_THAT(kind("....ftypisom"), Optional(DecodedKind::media));
    EXPECT_FALSE(kind("BMW a jiná auta, která začínají stejně"));
    EXPECT_FALSE(kind("Obrázek <svg> je v HTML."));
    EXPECT_FALSE(kind(""));
}

} // namespace fennik::test
