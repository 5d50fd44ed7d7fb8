#include "core/base/NumberedName.h"

#include "core/base/Utf8.h"

#include <algorithm>

namespace fennik {

namespace {

constexpr std::size_t longestCharacter = 4;

struct Parts {
    std::string_view base;
    std::string_view extension; ///< with its dot; may be empty
};

Parts split(std::string_view name) {
    const auto dot = name.rfind('.');
    // The dot of a hidden file begins no extension, and neither does one at the end.
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size())
        return {.base = name, .extension = {}};
    return {.base = name.substr(0, dot), .extension = name.substr(dot)};
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// `base` without the blank and the digits that a search for a free name put behind it.
std::string_view withoutNumber(std::string_view base) {
    auto end = base.size();
    while (end > 0 && isDigit(base[end - 1]))
        --end;
    const bool hasNumber = end < base.size() && end > 0 && base[end - 1] == ' ';
    return hasNumber ? base.substr(0, end - 1) : base;
}

/// As many whole characters as fit into `length` bytes; just that many bytes where they are no
/// text.
std::string_view shortened(std::string_view text, std::size_t length) {
    if (text.size() <= length)
        return text;
    if (!Utf8::isValid(text))
        return text.substr(0, length);
    std::size_t end = 0;
    for (std::size_t position = 0; position <= length; Utf8::next(text, position))
        end = position;
    return text.substr(0, end);
}

} // namespace

std::string numberedName(std::string_view name, std::string_view number, std::size_t length) {
    auto [base, extension] = split(name);
    if (extension.size() + number.size() + longestCharacter > length) {
        base = name;
        extension = {};
    }
    if (!number.empty())
        base = withoutNumber(base);
    const auto room = length - std::min(length, extension.size() + number.size());
    return std::string(shortened(base, room)).append(number).append(extension);
}

} // namespace fennik
