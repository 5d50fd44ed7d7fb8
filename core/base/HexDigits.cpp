#include "core/base/HexDigits.h"

namespace fennik {

namespace {

std::optional<unsigned> digitValue(char digit) {
    if (digit >= '0' && digit <= '9')
        return static_cast<unsigned>(digit - '0');
    if (digit >= 'a' && digit <= 'f')
        return static_cast<unsigned>(digit - 'a') + 10;
    if (digit >= 'A' && digit <= 'F')
        return static_cast<unsigned>(digit - 'A') + 10;
    return std::nullopt;
}

} // namespace

std::optional<std::uint8_t> hexByte(std::string_view text) {
    if (text.size() < 2)
        return std::nullopt;
    const auto high = digitValue(text[0]);
    const auto low = digitValue(text[1]);
    if (!high || !low)
        return std::nullopt;
    return static_cast<std::uint8_t>(*high << 4U | *low);
}

std::string hexDigits(std::uint8_t byte, HexCase letters) {
    const std::string_view digits =
        letters == HexCase::lower ? "0123456789abcdef" : "0123456789ABCDEF";
    return {digits[byte >> 4U], digits[byte & 0xFU]};
}

} // namespace fennik
