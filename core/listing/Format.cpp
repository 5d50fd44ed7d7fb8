#include "core/listing/Format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>

namespace fennik::Format {

namespace {

using icu::number::LocalizedNumberFormatter;
using icu::number::NumberFormatter;

constexpr std::string_view noBreakSpace = "\u00A0";
constexpr std::array<std::string_view, 6> units{"kB", "MB", "GB", "TB", "PB", "EB"};

std::string written(const LocalizedNumberFormatter& formatter, double value) {
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter.formatDouble(value, status).toString(status).toUTF8String(text);
    return U_SUCCESS(status) ? text : std::to_string(value);
}

/// Never groups and never rounds what has at most `most` decimals.
LocalizedNumberFormatter decimalFormatter(int least, int most) {
    return NumberFormatter::withLocale(icu::Locale("cs", "CZ"))
        .grouping(UNUM_GROUPING_OFF)
        .precision(icu::number::Precision::minMaxFraction(least, most));
}

/// `count` in units of `unit` bytes with so many decimals, as a whole number of the last decimal;
/// halves go up.
std::uint64_t scaled(std::uint64_t count, std::uint64_t unit, int decimals) {
    auto step = unit;
    for (int i = 0; i < decimals; ++i)
        step /= 10;
    return count / step + (count % step >= (step + 1) / 2 ? 1 : 0);
}

struct ScaledSize {
    double value;
    int leastDecimals; ///< kept even when they are zeros
};

/// `count` in this unit, or in thousands of it where rounding reached the next unit.
ScaledSize inUnit(std::uint64_t count, std::uint64_t unit, bool isKilobyte) {
    if (isKilobyte) {
        const auto tenths = scaled(count, unit, 1);
        if (tenths < 100)
            return {static_cast<double>(tenths) / 10, 1};
        return {static_cast<double>(scaled(count, unit, 0)), 0};
    }
    if (const auto hundredths = scaled(count, unit, 2); hundredths < 1000)
        return {static_cast<double>(hundredths) / 100, 0};
    if (const auto tenths = scaled(count, unit, 1); tenths < 1000)
        return {static_cast<double>(tenths) / 10, 0};
    return {static_cast<double>(scaled(count, unit, 0)), 0};
}

std::string unsignedBytes(std::uint64_t count) {
    if (count < 1000)
        return std::to_string(count) + std::string(noBreakSpace) + "B";
    std::uint64_t unit = 1000;
    std::size_t index = 0;
    auto size = inUnit(count, unit, true);
    while (size.value >= 1000 && index + 1 < units.size()) {
        unit *= 1000;
        ++index;
        size = inUnit(count, unit, false);
    }
    static const auto withOneDecimal = decimalFormatter(1, 1);
    static const auto asNeeded = decimalFormatter(0, 2);
    const auto& formatter = size.leastDecimals == 1 ? withOneDecimal : asNeeded;
    return written(formatter, size.value) + std::string(noBreakSpace) + std::string(units[index]);
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
    static const auto formatter = [] {
        UErrorCode status = U_ZERO_ERROR;
        icu::DecimalFormatSymbols symbols(icu::Locale("cs", "CZ"), status);
        symbols.setSymbol(icu::DecimalFormatSymbols::kGroupingSeparatorSymbol,
                          icu::UnicodeString(static_cast<UChar32>(0x202F)));
        return NumberFormatter::withLocale(icu::Locale("cs", "CZ"))
            .grouping(UNUM_GROUPING_ON_ALIGNED)
            .symbols(symbols);
    }();
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter.formatInt(number, status).toString(status).toUTF8String(text);
    return U_SUCCESS(status) ? text : std::to_string(number);
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
