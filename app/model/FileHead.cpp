#include "app/model/FileHead.h"

#include "core/archives/NameCharset.h"
#include "core/base/Utf8.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace fennik::app::FileHead {

namespace {

using std::string_view_literals::operator""sv;

/// The view breaks its lines anyway, and takes long over a line that never ends.
constexpr std::size_t longestLine = 4096; // characters
/// A text has at most one control that means nothing in so many bytes.
constexpr std::size_t bytesPerControl = 100;
constexpr char32_t replacement = Utf8::replacement;

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; // NOLINT: only seen as text
}

// Formats

struct Sign {
    std::size_t offset = 0;
    std::string_view bytes = {};
    DecodedKind kind = DecodedKind::picture;
};

constexpr std::array signs{
    Sign{0, "\x89PNG\r\n\x1A\n"sv, DecodedKind::picture},
    Sign{0, "\xFF\xD8\xFF"sv, DecodedKind::picture},
    Sign{0, "GIF87a"sv, DecodedKind::picture},
    Sign{0, "GIF89a"sv, DecodedKind::picture},
    Sign{8, "WEBPVP8"sv, DecodedKind::picture},
    Sign{0, "II*\0"sv, DecodedKind::picture},
    Sign{0, "MM\0*"sv, DecodedKind::picture},
    Sign{4, "ftypavif"sv, DecodedKind::picture},
    Sign{4, "ftypheic"sv, DecodedKind::picture},
    Sign{4, "ftypmif1"sv, DecodedKind::picture},
    Sign{0, "\0\0\1\0"sv, DecodedKind::picture},
    Sign{0, "%PDF-"sv, DecodedKind::document},
    Sign{4, "ftyp"sv, DecodedKind::media},
    Sign{8, "WAVE"sv, DecodedKind::media},
    Sign{8, "AVI "sv, DecodedKind::media},
    Sign{0, "fLaC"sv, DecodedKind::media},
    Sign{0, "OggS"sv, DecodedKind::media},
    Sign{0, "ID3"sv, DecodedKind::media},
    Sign{0, "\xFF\xFB"sv, DecodedKind::media},
    Sign{0, "\xFF\xF3"sv, DecodedKind::media},
    Sign{0, "\xFF\xF1"sv, DecodedKind::media},
    Sign{0, "\x1A\x45\xDF\xA3"sv, DecodedKind::media},
};

/// "BM" alone is how words begin; the size of the header has few values.
bool isBitmap(std::string_view head) {
    constexpr std::size_t headerSizeAt = 14;
    constexpr std::array headerSizes{'\x0C', '\x28', '\x6C', '\x7C'};
    return head.starts_with("BM") && head.size() > headerSizeAt + 3 &&
           std::ranges::find(headerSizes, head[headerSizeAt]) != headerSizes.end() &&
           head.substr(headerSizeAt + 1, 3) == "\0\0\0"sv;
}

bool isDrawing(std::string_view head) {
    constexpr std::size_t looksFar = 4096;
    if (head.starts_with("\xEF\xBB\xBF"))
        head.remove_prefix(3);
    const auto begin = head.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && head[begin] == '<' &&
           head.substr(0, looksFar).contains("<svg");
}

// Texts

bool isStrayControl(char32_t scalar) {
    constexpr std::u32string_view usual = U"\b\t\n\v\f\r\x1B";
    return (scalar < 0x20 && !usual.contains(scalar)) || scalar == 0x7F;
}

/// Collects the scalars of a text for the eye.
class TextBuilder {
public:
    explicit TextBuilder(std::size_t expected) { text_.reserve(expected); }

    void add(char32_t scalar) {
        const bool followsReturn = std::exchange(wasReturn_, scalar == '\r');
        if (scalar == '\n' && followsReturn)
            return;
        if (scalar == '\n' || scalar == '\r') {
            text_ += '\n';
            column_ = 0;
            return;
        }
        if (++column_ > longestLine) {
            text_ += '\n';
            column_ = 1;
        }
        constexpr char32_t pictures = 0x2400; // of the controls, in their order
        constexpr char32_t pictureOfDelete = 0x2421;
        if (scalar < 0x20 && scalar != '\t')
            scalar += pictures;
        Utf8::append(text_, scalar == 0x7F ? pictureOfDelete : scalar);
    }

    std::string take() { return std::move(text_); }

private:
    std::string text_;
    std::size_t column_ = 0;
    bool wasReturn_ = false;
};

enum class Endian { little, big };

unsigned byteAt(std::string_view bytes, std::size_t place) {
    return static_cast<unsigned char>(bytes[place]);
}

PreviewText fromUtf16(std::string_view bytes, Endian endian, bool isCut) {
    TextBuilder builder(bytes.size());
    const auto unit = [&](std::size_t place) -> char32_t {
        const auto first = byteAt(bytes, place);
        const auto second = byteAt(bytes, place + 1);
        return endian == Endian::little ? second << 8U | first : first << 8U | second;
    };
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto high = unit(i);
        if (high < 0xD800 || high > 0xDFFF) {
            builder.add(high);
            continue;
        }
        const bool hasPair = high < 0xDC00 && i + 3 < bytes.size();
        const auto low = hasPair ? unit(i + 2) : 0;
        if (low >= 0xDC00 && low <= 0xDFFF) {
            builder.add(0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00));
            i += 2;
        } else if (hasPair || !isCut) {
            builder.add(replacement);
        }
    }
    return {.text = builder.take(), .charset = "UTF-16", .isCut = isCut};
}

/// The order in which text of two bytes a character has its zeros, where it looks like such text:
/// most characters of the languages at hand have one, always in the same place.
std::optional<Endian> utf16Order(std::string_view bytes) {
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\0')
            ++zeros.at(i % 2);
    }
    const auto characters = bytes.size() / 2;
    if (characters == 0)
        return std::nullopt;
    const auto many = characters * 2 / 5;
    const auto few = characters / 50;
    if (zeros[1] > many && zeros[0] <= few)
        return Endian::little;
    if (zeros[0] > many && zeros[1] <= few)
        return Endian::big;
    return std::nullopt;
}

/// How many controls stand in a text as their pictures.
std::size_t builtControls(std::string_view text) {
    constexpr auto beginOfPictures = "\xE2\x90"sv;
    std::size_t count = 0;
    for (auto at = text.find(beginOfPictures); at != std::string_view::npos;
         at = text.find(beginOfPictures, at + 1))
        ++count;
    return count;
}

/// Without the beginning of a character whose rest is cut off.
std::string_view withoutBrokenEnd(std::string_view bytes) {
    constexpr std::size_t longestCharacter = 4;
    for (std::size_t length = 1; length < longestCharacter && length <= bytes.size(); ++length) {
        const auto byte = byteAt(bytes, bytes.size() - length);
        if ((byte & 0xC0U) == 0x80)
            continue;
        return byte >= 0xC0 ? bytes.substr(0, bytes.size() - length) : bytes;
    }
    return bytes;
}

std::string charsetOf(std::string_view bytes) {
    constexpr std::size_t enough = std::size_t{32} << 10;
    std::vector<std::string_view> words;
    auto left = bytes.substr(0, enough);
    while (!left.empty()) {
        const auto length = std::min(left.find_first_of(" \t\r\n"), left.size());
        const auto word = left.substr(0, length);
        if (!Utf8::isValid(word))
            words.push_back(word);
        left.remove_prefix(std::min(length + 1, left.size()));
    }
    return NameCharset::guess(words);
}

PreviewText fromBytes(std::string_view bytes, bool isCut) {
    const auto name = charsetOf(bytes);
    const NameCharset charset(name);
    TextBuilder builder(bytes.size() * 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = byteAt(bytes, i);
        builder.add(byte < 0x80 ? char32_t{byte} : charset.characters().at(byte - 0x80));
    }
    return {.text = builder.take(), .charset = name, .isCut = isCut};
}

std::optional<PreviewText> textIn(std::string_view bytes, bool isCut) {
    if (bytes.starts_with("\xFF\xFE"sv))
        return fromUtf16(bytes.substr(2), Endian::little, isCut);
    if (bytes.starts_with("\xFE\xFF"sv))
        return fromUtf16(bytes.substr(2), Endian::big, isCut);
    if (const auto order = utf16Order(bytes)) {
        auto text = fromUtf16(bytes, *order, isCut);
        if (builtControls(text.text) * bytesPerControl <= text.text.size())
            return text;
    }
    if (bytes.starts_with("\xEF\xBB\xBF"sv))
        bytes.remove_prefix(3);
    const auto controls = std::ranges::count_if(
        bytes, [](char byte) { return isStrayControl(static_cast<unsigned char>(byte)); });
    if (static_cast<std::size_t>(controls) * bytesPerControl > bytes.size())
        return std::nullopt;
    const auto whole = isCut ? withoutBrokenEnd(bytes) : bytes;
    if (!Utf8::isValid(whole))
        return fromBytes(bytes, isCut);
    TextBuilder builder(whole.size());
    for (std::size_t position = 0; position < whole.size();)
        builder.add(Utf8::next(whole, position));
    return PreviewText{.text = builder.take(), .charset = "UTF-8", .isCut = isCut};
}

} // namespace

std::optional<DecodedKind> decodedKind(std::span<const std::byte> head) {
    const auto bytes = textOf(head);
    const auto sign = std::ranges::find_if(signs, [bytes](const Sign& known) {
        return bytes.size() > known.offset && bytes.substr(known.offset).starts_with(known.bytes);
    });
    if (sign != signs.end())
        return sign->kind;
    if (isBitmap(bytes) || isDrawing(bytes))
        return DecodedKind::picture;
    return std::nullopt;
}

PreviewContent content(std::span<const std::byte> head, bool isCut) {
    if (auto text = textIn(textOf(head), isCut))
        return *std::move(text);
    const auto bytes = head.first(std::min(head.size(), longestBytes));
    return PreviewBytes{.bytes = {bytes.begin(), bytes.end()},
                        .isCut = isCut || bytes.size() < head.size()};
}

} // namespace fennik::app::FileHead
