#include "core/base/Uuid.h"

#include "core/base/HexDigits.h"

#include <cstddef>
#include <random>

namespace fennik {

namespace {

constexpr std::size_t textLength = 36;

constexpr bool isHyphenPlace(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

/// The system's own source may take microseconds a word, too long for thousands of saved tabs; it
/// only seeds. Nobody has to be kept from guessing an identifier.
std::mt19937_64 seeded() {
    std::random_device source;
    std::seed_seq seed{source(), source(), source(), source()};
    return std::mt19937_64(seed);
}

} // namespace

Uuid Uuid::random() {
    static thread_local auto source = seeded();
    std::uniform_int_distribution<unsigned> byte(0, 255);
    Uuid result;
    for (auto& value : result.bytes_)
        value = static_cast<std::uint8_t>(byte(source));
    result.bytes_[6] = static_cast<std::uint8_t>((result.bytes_[6] & 0x0FU) | 0x40U);
    result.bytes_[8] = static_cast<std::uint8_t>((result.bytes_[8] & 0x3FU) | 0x80U);
    return result;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength)
        return std::nullopt;
    Uuid result;
    auto byte = result.bytes_.begin();
    for (std::size_t i = 0; i < textLength;) {
        if (isHyphenPlace(i)) {
            if (text[i++] != '-')
                return std::nullopt;
            continue;
        }
        const auto value = hexByte(text.substr(i, 2));
        if (!value)
            return std::nullopt;
        *byte++ = *value;
        i += 2;
    }
    return result;
}

std::string Uuid::text() const {
    std::string result;
    result.reserve(textLength);
    for (const auto byte : bytes_) {
        if (isHyphenPlace(result.size()))
            result += '-';
        result += hexDigits(byte, HexCase::lower);
    }
    return result;
}

} // namespace fennik
