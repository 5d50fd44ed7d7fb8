#include "core/archives/NameCharset.h"

#include "core/base/Utf8.h"

#include <cstdint>
#include <limits>
#include <unicode/uchar.h>

namespace fennik {

namespace {

/// The first of equally good ones is taken.
constexpr std::array candidates = {"windows-1250", "IBM852",       "ISO-8859-2",
                                   "IBM866",       "windows-1251", "KOI8-R"};

enum class Shape : std::uint8_t { other, lower, upper };
enum class Script : std::uint8_t { none, latin, cyrillic };

/// What a character says about a name it stands in.
struct Trait {
    std::int8_t weight = 0;
    Shape shape = Shape::other;
    Script script = Script::none;
};

bool isIn(char32_t character, std::u32string_view characters) {
    return characters.contains(character);
}

std::int8_t weightOfLetter(char32_t lower) {
    if (isIn(lower, U"íáéěýřčšžů"))
        return 6;
    if (isIn(lower, U"úňóťďоеаинтсрвлкмдпуяыь"))
        return 4;
    if (isIn(lower, U"äöüôľĺŕгзбчйхжшюцщэфъё"))
        return 2;
    return -2; // letters of other languages
}

std::int8_t weightOfSymbol(char32_t character) {
    if (isIn(character, U"„“”‚‘’–—…§°\u00A0"))
        return -4;
    if (character < 0xA0 || character == Utf8::replacement)
        return -24; // controls and nothing at all
    const bool isDrawing = character >= 0x2500 && character <= 0x25FF;
    return isDrawing ? -12 : -8;
}

Trait traitOf(char32_t character) {
    const auto scalar = static_cast<UChar32>(character);
    if (u_isalpha(scalar) == 0)
        return {character < 0x80 ? std::int8_t{0} : weightOfSymbol(character)};
    const auto lower = static_cast<char32_t>(u_tolower(scalar));
    return {.weight = lower < 0x80 ? std::int8_t{0} : weightOfLetter(lower),
            .shape = lower == character ? Shape::lower : Shape::upper,
            .script = lower >= 0x400 && lower < 0x530 ? Script::cyrillic : Script::latin};
}

class Judge {
public:
    explicit Judge(const char* charset) {
        const NameCharset names(charset);
        for (unsigned byte = 0; byte <= 0xFF; ++byte)
            traits_.at(byte) = traitOf(byte < 0x80 ? byte : names.characters().at(byte - 0x80));
    }

    /// The more, the more usual a name.
    std::int64_t worth(std::string_view name) const {
        std::int64_t sum = 0;
        for (std::size_t i = 0; i < name.size(); ++i) {
            const bool isBeyondAscii = (static_cast<unsigned char>(name[i]) & 0x80U) != 0;
            const auto before = i > 0 ? trait(name[i - 1]) : Trait{};
            const auto here = trait(name[i]);
            const bool mixesScripts = before.script != Script::none &&
                                      here.script != Script::none && before.script != here.script;
            if (isBeyondAscii || mixesScripts)
                sum += here.weight - (mixesScripts ? mixture : 0);
            if (before.shape == Shape::lower && here.shape == Shape::upper && isBeyondAscii)
                sum -= mixture;
            if (i > 1 && before.shape == Shape::upper && here.shape == Shape::lower &&
                trait(name[i - 2]).shape == Shape::upper)
                sum -= mixture / 2;
        }
        return sum;
    }

private:
    static constexpr int mixture = 8;

    const Trait& trait(char byte) const {
        return traits_[static_cast<unsigned char>(byte)]; // NOLINT: as many as there are bytes
    }

    std::array<Trait, 256> traits_;
};

} // namespace

std::string NameCharset::guess(std::span<const std::string_view> names) {
    std::string best;
    auto most = std::numeric_limits<std::int64_t>::min();
    for (const char* candidate : candidates) {
        const Judge judge(candidate);
        std::int64_t sum = 0;
        for (const auto name : names)
            sum += judge.worth(name);
        if (sum > most) {
            most = sum;
            best = candidate;
        }
    }
    return best;
}

} // namespace fennik
