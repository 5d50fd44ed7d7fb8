#include "app/preview/HelperDecoder.h"

#include "core/platform/RegularFile.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QImage>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace fennik::test {

namespace {

using namespace app;
using namespace std::chrono_literals;
using namespace std::string_literals;
using testing::AllOf;
using testing::Contains;
using testing::Field;
using testing::Pair;
using testing::VariantWith;

class HelperDecoderTest : public testing::Test {
protected:
    std::expected<Decoded, std::string> decode(const PreviewDecoder& decoder, DecodedKind kind,
                                               const std::string& content) {
        temp.file("file", content);
        const auto file = RegularFile::openFollowing(temp.path("file"));
        return decoder.decode(kind, file->descriptor(), [this] { return isCancelled; });
    }
    std::expected<Decoded, std::string> decode(DecodedKind kind, const std::string& content) {
        return decode(HelperDecoder(PREVIEW_PROGRAM, 60s), kind, content);
    }
    /// What a helper that does as `wish` says comes to.
    std::expected<Decoded, std::string> misbehaving(const std::string& wish,
                                                    std::chrono::milliseconds patience = 60s) {
        return decode(HelperDecoder(MISBEHAVING_HELPER, patience), DecodedKind::picture, wish);
    }

    TempFolder temp;
    bool isCancelled = false;
};

const auto damaged = std::unexpected("Soubor je poškozený a ukázat nejde."s);
const auto tooLarge = std::unexpected("Na náhled je moc velký."s);

std::string inFormat(const char* format, const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes.toStdString();
}

/// The left half red, the right one green.
QImage halves(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < height; ++y)
        for (int x = width / 2; x < width; ++x)
            image.setPixelColor(x, y, Qt::green);
    return image;
}

std::uint32_t pixel(const DecodedPicture& picture, int x, int y) {
    std::uint32_t value = 0;
    std::memcpy(&value, &picture.pixels[std::size_t(y * picture.width + x) * 4], sizeof value);
    return value;
}

/// A JPEG that says by its EXIF record how it is to be turned.
std::string turned(std::string jpeg, char orientation) {
    const auto exif = "\xFF\xE1\x00\x22"s + "Exif\0\0"s + "II*\0\x08\0\0\0"s + "\x01\0"s +
                      "\x12\x01\x03\0\x01\0\0\0"s + orientation + "\0\0\0"s + "\0\0\0\0"s;
    return jpeg.insert(2, exif);
}

std::string bigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16),
            static_cast<char>(value >> 8), static_cast<char>(value)};
}

/// The check sum of a PNG's chunks.
std::uint32_t checkSum(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~sum;
}

std::string chunk(const std::string& typeAndData) {
    return bigEndian(static_cast<std::uint32_t>(typeAndData.size() - 4)) + typeAndData +
           bigEndian(checkSum(typeAndData));
}

/// Some hundred bytes that say they are a picture of so many pixels.
std::string bomb(std::uint32_t side) {
    const auto header = "IHDR" + bigEndian(side) + bigEndian(side) + "\x08\x06\0\0\0"s;
    return "\x89PNG\r\n\x1A\n" + chunk(header) + chunk("IDAT" + std::string(64, '\0')) +
           chunk("IEND");
}

/// One page of 200 × 100 points, black but for nothing.
std::string document() {
    std::string pdf = "%PDF-1.4\n";
    std::vector<std::size_t> places;
    const std::string drawing = "0 0 200 100 re f";
    for (const auto& object :
         {"<</Type/Catalog/Pages 2 0 R>>"s, "<</Type/Pages/Kids[3 0 R]/Count 1>>"s,
          "<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 100]/Contents 4 0 R>>"s,
          "<</Length " + std::to_string(drawing.size()) + ">>stream\n" + drawing + "\nendstream"}) {
        places.push_back(pdf.size());
        pdf += std::to_string(places.size()) + " 0 obj" + object + "endobj\n";
    }
    const auto table = pdf.size();
    pdf += "xref\n0 5\n0000000000 65535 f \n";
    for (const auto place : places) {
        auto digits = std::to_string(place);
        pdf += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    }
    return pdf + "trailer<</Size 5/Root 1 0 R>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
}

/// Two seconds of silence.
std::string sound() {
    const auto number = [](std::uint32_t value, int size) {
        std::string bytes;
        for (int i = 0; i < size; ++i)
            bytes += static_cast<char>(value >> (8 * i));
        return bytes;
    };
    const std::string data(2 * 8000, '\x80');
    const auto format = number(1, 2) + number(1, 2) + number(8000, 4) + number(8000, 4) +
                        number(1, 2) + number(8, 2);
    const auto content = "WAVEfmt " + number(16, 4) + format + "data" +
                         number(static_cast<std::uint32_t>(data.size()), 4) + data;
    return "RIFF" + number(static_cast<std::uint32_t>(content.size()), 4) + content;
}

} // namespace

TEST_F(HelperDecoderTest, picturesComeAsTheyAreToBeSeen) {
    const auto png = decode(DecodedKind::picture, inFormat("PNG", halves(40, 20)));
    ASSERT_TRUE(png) << png.error();
    const auto& picture = std::get<DecodedPicture>(*png);
    EXPECT_EQ(picture.width, 40);
    EXPECT_EQ(picture.fullHeight, 20);
    EXPECT_EQ(pixel(picture, 1, 10), 0xFFFF0000);
    EXPECT_EQ(pixel(picture, 38, 10), 0xFF00FF00);

    const auto photo = decode(DecodedKind::picture, turned(inFormat("JPG", halves(4000, 1000)), 6));
    ASSERT_TRUE(photo) << photo.error();
    const auto& upright = std::get<DecodedPicture>(*photo);
    EXPECT_EQ(upright.fullWidth, 1000);
    EXPECT_EQ(upright.fullHeight, 4000);
    EXPECT_EQ(upright.width, 512);
    EXPECT_EQ(upright.height, PreviewDecoder::longestSide);
    EXPECT_GT(pixel(upright, 256, 10) & 0xFF0000, 0xF00000U) << "what was left is above";

    const auto drawing = decode(DecodedKind::picture,
                                "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='5'>"
                                "<rect width='10' height='5' fill='#0000FF'/>"
                                "<text x='1' y='4'>a</text></svg>");
    ASSERT_TRUE(drawing) << drawing.error();
    EXPECT_EQ(std::get<DecodedPicture>(*drawing).width, PreviewDecoder::longestSide);
    EXPECT_EQ(pixel(std::get<DecodedPicture>(*drawing), 2000, 10), 0xFF0000FF);
}

TEST_F(HelperDecoderTest, documentsShowTheirFirstPageAndRecordingsTheirFacts) {
    const auto page = decode(DecodedKind::document, document());
    ASSERT_TRUE(page) << page.error();
    const auto& picture = std::get<DecodedPicture>(*page);
    EXPECT_EQ(picture.pages, 1);
    EXPECT_NEAR(picture.width, 2 * picture.height, 4);
    EXPECT_EQ(pixel(picture, picture.width / 2, picture.height / 2), 0xFF000000);

    const auto recording = decode(DecodedKind::media, sound());
    ASSERT_TRUE(recording) << recording.error();
    EXPECT_THAT(
        std::get<DecodedMedia>(*recording),
        AllOf(Field(&DecodedMedia::seconds, testing::DoubleNear(2, 0.01)),
              Field(&DecodedMedia::facts, AllOf(Contains(Pair("Délka", "0:02")),
                                                Contains(Pair("Zvuk", "PCM, 8 kHz, 1 kanál"))))));
}

TEST_F(HelperDecoderTest, whatIsBrokenIsSaidSo) {
    EXPECT_EQ(decode(DecodedKind::picture, bomb(60'000)), damaged);
    const auto png = inFormat("PNG", halves(400, 400));
    EXPECT_EQ(decode(DecodedKind::picture, png.substr(0, 60)), damaged);
    EXPECT_EQ(decode(DecodedKind::document, "%PDF-1.4 and nothing more"), damaged);
    EXPECT_EQ(decode(DecodedKind::document, document().substr(0, 40)), damaged);
    EXPECT_EQ(decode(DecodedKind::picture, "....ftypheic"), std::unexpected(""s));
}

TEST_F(HelperDecoderTest, aHelperMayDoWhatItWants) {
    const auto tooLong = std::unexpected("Náhled se nepodařilo připravit včas."s);
    EXPECT_EQ(misbehaving("sleep", 100ms), tooLong);
    EXPECT_EQ(misbehaving("spin"), tooLong);
    EXPECT_EQ(misbehaving("eat"), tooLarge);
    for (const auto* wish : {"crash", "leave", "huge picture", "no picture", "negative",
                             "too many pixels", "only pixels"})
        EXPECT_EQ(misbehaving(wish), damaged) << wish;
    const auto ugly = misbehaving("ugly words");
    ASSERT_TRUE(ugly);
    EXPECT_THAT(*ugly, VariantWith<DecodedMedia>(
                           Field(&DecodedMedia::facts,
                                 testing::ElementsAre(Pair("Ná↵zev", "\uFFFD\uFFFD[31m")))));
    EXPECT_THAT(*misbehaving("open files"),
                VariantWith<DecodedMedia>(Field(&DecodedMedia::seconds, 4)))
        << "the three usual ones and the file";
    isCancelled = true;
    EXPECT_EQ(misbehaving("sleep"), std::unexpected(""s));
    EXPECT_THAT(decode(HelperDecoder("/nowhere/fennik-preview"), DecodedKind::picture, "x").error(),
                testing::StartsWith("Náhled nejde připravit: "));
}

} // namespace fennik::test
