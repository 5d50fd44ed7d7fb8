#include "core/listing/Format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace fennik::Format {

namespace {

constexpr std::string_view noBreakSpace = "\u00A0";
constexpr std::array<std::string_view, 6> units{"kB", "MB", "GB", "TB", "PB", "EB"};

/// `count` in units of `unit` bytes with so many decimals, as a whole number of the last decimal;
/// halves go up.
std::uint64_t scaled(std::uint64_t count, std::uint64_t unit, std::size_t decimals) {
    auto step = unit;
    for (std::size_t i = 0; i < decimals; ++i)
        step /= 10;
    return count / step + (count % step >= (step + 1) / 2 ? 1 : 0);
}

/// A size as a whole number of the last decimal of some unit.
struct ScaledSize {
    std::uint64_t number;
    std::size_t decimals;
    bool keepsZeros; ///< Decimals are written even when they are zeros.
};

ScaledSize inKilobytes(std::uint64_t count) {
    constexpr std::uint64_t unit = 1000;
    if (const auto tenths = scaled(count, unit, 1); tenths < 100)
        return {.number = tenths, .decimals = 1, .keepsZeros = true};
    return {.number = scaled(count, unit, 0), .decimals = 0, .keepsZeros = false};
}

/// Three significant digits, or more before the comma.
ScaledSize inUnit(std::uint64_t count, std::uint64_t unit) {
    for (std::size_t decimals = 2; decimals > 0; --decimals)
        if (const auto number = scaled(count, unit, decimals); number < 1000)
            return {.number = number, .decimals = decimals, .keepsZeros = false};
    return {.number = scaled(count, unit, 0), .decimals = 0, .keepsZeros = false};
}

std::string written(const ScaledSize& size) {
    auto text = std::to_string(size.number);
    if (size.decimals == 0)
        return text;
    text.insert(text.size() - size.decimals, ",");
    if (!size.keepsZeros) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == ',')
            text.pop_back();
    }
    return text;
}

std::string unsignedBytes(std::uint64_t count) {
    if (count < 1000)
        return std::to_string(count) + std::string(noBreakSpace) + "B";
    std::uint64_t unit = 1000;
    std::size_t index = 0;
    auto size = inKilobytes(count);
    while (size.decimals == 0 && size.number >= 1000 && index + 1 < units.size()) {
        unit *= 1000;
        ++index;
        size = inUnit(count, unit);
    }
    return written(size) + std::string(noBreakSpace) + std::string(units[index]);
}

std::string twoDigits(std::int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

} // namespace

std::string bytes(std::int64_t count) {
    const auto magnitude = static_cast<std::uint64_t>(count);
    return count < 0 ? "-" + unsignedBytes(0 - magnitude) : unsignedBytes(magnitude);
}

std::string grouped(std::int64_t number) {
    constexpr std::string_view narrowNoBreakSpace = "\u202F";
    auto text = std::to_string(number);
    const std::size_t firstDigit = number < 0 ? 1 : 0;
    for (auto position = text.size(); position > firstDigit + 3;) {
        position -= 3;
        text.insert(position, narrowNoBreakSpace);
    }
    return text;
}

std::string duration(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0)
        return "–";
    constexpr double longest = 9e18; // beyond it a whole number of seconds has no room
    const auto whole = static_cast<std::int64_t>(std::min(std::round(seconds), longest));
    const auto lastMinute = ":" + twoDigits(whole % 60);
    if (whole < 3600)
        return std::to_string(whole / 60) + lastMinute;
    return std::to_string(whole / 3600) + ":" + twoDigits(whole / 60 % 60) + lastMinute;
}

std::string permissions(std::uint16_t mode, Folder folder) {
    constexpr std::string_view letters = "rwxrwxrwx";
    std::string text(1, folder == Folder::yes ? 'd' : '-');
    for (std::size_t i = 0; i < letters.size(); ++i)
        text += (mode & (0400U >> i)) != 0 ? letters[i] : '-';
    return text;
}

std::string permissions(const FileItemView& item) {
    return permissions(item.mode, item.isFolderLike() ? Folder::yes : Folder::no);
}

} // namespace fennik::Format
