#include "core/listing/NameKey.h"

#include "core/base/Folding.h"
#include "core/base/Utf8.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace fennik::NameKey {

namespace {

constexpr std::uint32_t numberMarker = U'0' * 4;
constexpr std::uint32_t scalarCount = 0x110000;
constexpr std::uint32_t firstBeyondAscii = 128 * 4;

bool isDigit(char32_t scalar) {
    return scalar >= U'0' && scalar <= U'9';
}

constexpr std::uint32_t ofAscii(char32_t scalar) {
    const bool isUpper = scalar >= U'A' && scalar <= U'Z';
    return static_cast<std::uint32_t>(isUpper ? scalar + 32 : scalar) * 4;
}

std::uint32_t computed(char32_t scalar) {
    switch (scalar) {
    case U'Č':
    case U'č':
        return ofAscii(U'c') + 2;
    case U'Ř':
    case U'ř':
        return ofAscii(U'r') + 2;
    case U'Š':
    case U'š':
        return ofAscii(U's') + 2;
    case U'Ž':
    case U'ž':
        return ofAscii(U'z') + 2;
    default:
        break;
    }
    const auto text = folded(scalar);
    if (text.size() == 1 && text.front() < 128)
        return ofAscii(text.front());
    return static_cast<std::uint32_t>(text.empty() ? scalar : text.front()) * 4 + 1;
}

/// Walks the elements of the key of `name`: `scalar(key)` for each element of a scalar, and
/// `number(digits)` for each run of digits without its leading zeros.
template <class OnScalar, class OnNumber>
void walk(std::string_view name, OnScalar onScalar, OnNumber onNumber) {
    for (std::size_t position = 0; position < name.size();) {
        const auto byte = static_cast<unsigned char>(name[position]);
        if (!isDigit(byte)) {
            if (byte < 128) {
                ++position;
                onScalar(ofAscii(byte));
            } else {
                onScalar(ofScalar(Utf8::next(name, position)));
            }
            continue;
        }
        auto end = position;
        while (end < name.size() && isDigit(static_cast<unsigned char>(name[end])))
            ++end;
        while (position + 1 < end && name[position] == '0')
            ++position;
        onNumber(name.substr(position, end - position));
        position = end;
    }
}

/// The bytes 1 … for the elements below those of scalars beyond ASCII. Such an element is the
/// fourfold of an ASCII character (never of a capital), that plus one for a folding that only
/// begins with the character, or that plus two for a Czech letter.
constexpr auto rankTable = [] {
    std::array<std::uint8_t, firstBeyondAscii> ranks{};
    std::uint8_t next = 1;
    for (std::uint32_t key = 0; key < firstBeyondAscii; ++key) {
        const auto letter = static_cast<char32_t>(key / 4);
        const bool isUpper = letter >= U'A' && letter <= U'Z';
        const bool isCzech = letter == U'c' || letter == U'r' || letter == U's' || letter == U'z';
        const bool occurs = key % 4 < 2 || (key % 4 == 2 && isCzech);
        if (occurs && !isUpper)
            ranks[key] = next++;
    }
    return ranks;
}();

constexpr char32_t longLead = 254;
constexpr std::uint32_t base = 250;
static_assert(rankTable[ofAscii(U'z') + 2] != 0 && rankTable.back() < longLead);

/// Three bytes, 1 to 250, in the order of the values below 250³.
void appendLong(std::uint32_t value, std::string& bytes) {
    for (const auto part : {value / (base * base), value / base % base, value % base})
        bytes += static_cast<char>(part + 1);
}

void appendScalar(std::uint32_t key, std::string& bytes) {
    if (key < firstBeyondAscii) {
        bytes += static_cast<char>(rankTable[key]);
        return;
    }
    bytes += static_cast<char>(longLead);
    appendLong(key, bytes);
}

void appendNumber(std::string_view digits, std::string& bytes) {
    bytes += static_cast<char>(rankTable[numberMarker]);
    if (digits.size() < longLead) {
        bytes += static_cast<char>(digits.size());
    } else {
        bytes += static_cast<char>(longLead);
        appendLong(static_cast<std::uint32_t>(digits.size()), bytes);
    }
    for (const char digit : digits)
        bytes += static_cast<char>(digit - '0' + 1);
}

} // namespace

std::uint32_t ofScalar(char32_t scalar) {
    if (scalar < 128)
        return ofAscii(scalar);
    // Folding is a long way through ICU, so each scalar goes it once. 0 is the key of U+0000 alone,
    // and so free to mean "not yet known". Untouched pages of the table take no memory.
    static std::array<std::atomic<std::uint32_t>, scalarCount> known;
    auto& slot = known[scalar];
    auto key = slot.load(std::memory_order_relaxed);
    if (key == 0) {
        key = computed(scalar);
        slot.store(key, std::memory_order_relaxed);
    }
    return key;
}

std::vector<std::uint32_t> make(std::string_view name) {
    std::vector<std::uint32_t> key;
    key.reserve(name.size());
    walk(
        name, [&key](std::uint32_t element) { key.push_back(element); },
        [&key](std::string_view digits) {
            key.push_back(numberMarker);
            key.push_back(static_cast<std::uint32_t>(digits.size()));
            for (const char digit : digits)
                key.push_back(static_cast<std::uint32_t>(digit - '0'));
        });
    return key;
}

void appendBytes(std::string_view name, std::string& bytes) {
    walk(
        name, [&bytes](std::uint32_t element) { appendScalar(element, bytes); },
        [&bytes](std::string_view digits) { appendNumber(digits, bytes); });
    bytes += '\0';
}

} // namespace fennik::NameKey
