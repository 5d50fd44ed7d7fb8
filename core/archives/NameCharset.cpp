#include "core/archives/NameCharset.h"

#include "core/base/HexDigits.h"
#include "core/base/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utypes.h>

namespace fennik {

namespace {

struct Closing {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, Closing>;

char32_t characterOf(UConverter* converter, unsigned char byte) {
    const char source = static_cast<char>(byte);
    std::array<UChar, 4> target{};
    UErrorCode error = U_ZERO_ERROR;
    const auto length = ucnv_toUChars(converter, target.data(), target.size(), &source, 1, &error);
    // Controls say nothing, and what is not beyond ASCII would be another way to write a "/".
    const bool isCharacter = U_SUCCESS(error) && length == 1 && target[0] >= 0xA0;
    return isCharacter ? target[0] : Utf8::replacement;
}

std::size_t indexOf(unsigned char byte) {
    return byte - std::size_t{0x80};
}

} // namespace

NameCharset::NameCharset(const std::string& name) {
    UErrorCode error = U_ZERO_ERROR;
    const Converter converter(ucnv_open(name.c_str(), &error));
    characters_.fill(Utf8::replacement);
    if (U_FAILURE(error))
        return;
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const auto character = characterOf(converter.get(), static_cast<unsigned char>(byte));
        if (std::ranges::find(characters_, character) == characters_.end())
            characters_.at(byte - 0x80) = character;
    }
}

std::string NameCharset::decoded(std::string_view path) const {
    std::string text;
    for (std::size_t begin = 0; begin <= path.size();) {
        const auto end = std::min(path.find('/', begin), path.size());
        const auto component = path.substr(begin, end - begin);
        if (begin > 0)
            text += '/';
        begin = end + 1;
        if (Utf8::isValid(component)) {
            text += component;
            continue;
        }
        for (const char each : component) {
            const auto byte = static_cast<unsigned char>(each);
            const auto character = byte < 0x80 ? byte : characters_.at(indexOf(byte));
            Utf8::append(text, character);
            if (character == Utf8::replacement)
                text += hexDigits(byte, HexCase::upper);
        }
    }
    return text;
}

} // namespace fennik
