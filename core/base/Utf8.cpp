#include "core/base/Utf8.h"

#include <cstdint>
#include <cstring>

namespace fennik::Utf8 {

namespace {

struct LeadByte {
    std::size_t length;
    char32_t bits;
    char32_t smallest;
};

LeadByte classify(unsigned char lead) {
    if (lead < 0x80)
        return {1, lead, 0};
    if ((lead & 0xE0) == 0xC0)
        return {2, lead & 0x1FU, 0x80};
    if ((lead & 0xF0) == 0xE0)
        return {3, lead & 0x0FU, 0x800};
    if ((lead & 0xF8) == 0xF0)
        return {4, lead & 0x07U, 0x10000};
    return {0, 0, 0};
}

/// The length of the valid sequence at `position` and its scalar; length 0 where there is none.
struct Sequence {
    std::size_t length;
    char32_t scalar;
};

Sequence sequenceAt(std::string_view bytes, std::size_t position) {
    const auto lead = classify(static_cast<unsigned char>(bytes[position]));
    if (lead.length == 0 || bytes.size() - position < lead.length)
        return {0, replacement};
    char32_t scalar = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[position + i]);
        if ((byte & 0xC0) != 0x80)
            return {0, replacement};
        scalar = scalar << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
    if (scalar < lead.smallest || scalar > 0x10FFFF || isSurrogate)
        return {0, replacement};
    return {lead.length, scalar};
}

/// How many bytes from `position` on are ASCII.
std::size_t asciiAt(std::string_view bytes, std::size_t position) {
    constexpr std::uint64_t beyondAscii = 0x8080'8080'8080'8080U;
    auto end = position;
    for (std::uint64_t word = 0; bytes.size() - end >= sizeof word; end += sizeof word) {
        std::memcpy(&word, &bytes[end], sizeof word);
        if ((word & beyondAscii) != 0)
            break;
    }
    while (end < bytes.size() && static_cast<unsigned char>(bytes[end]) < 0x80)
        ++end;
    return end - position;
}

} // namespace

char32_t next(std::string_view bytes, std::size_t& position) {
    const auto [length, scalar] = sequenceAt(bytes, position);
    position += length == 0 ? 1 : length;
    return scalar;
}

void append(std::string& bytes, char32_t scalar) {
    const auto put = [&bytes](char32_t value) { bytes += static_cast<char>(value); };
    if (scalar < 0x80) {
        put(scalar);
    } else if (scalar < 0x800) {
        put(0xC0U | scalar >> 6U);
        put(0x80U | (scalar & 0x3FU));
    } else if (scalar < 0x10000) {
        put(0xE0U | scalar >> 12U);
        put(0x80U | (scalar >> 6U & 0x3FU));
        put(0x80U | (scalar & 0x3FU));
    } else {
        put(0xF0U | scalar >> 18U);
        put(0x80U | (scalar >> 12U & 0x3FU));
        put(0x80U | (scalar >> 6U & 0x3FU));
        put(0x80U | (scalar & 0x3FU));
    }
}

bool isValid(std::string_view bytes) {
    for (std::size_t position = 0; position < bytes.size();) {
        position += asciiAt(bytes, position);
        if (position == bytes.size())
            break;
        const auto length = sequenceAt(bytes, position).length;
        if (length == 0)
            return false;
        position += length;
    }
    return true;
}

} // namespace fennik::Utf8
