#include "core/base/AsciiText.h"

#include <algorithm>

namespace fennik {

std::string asciiLowered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char byte) {
        return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    });
    return result;
}

std::string asciiUppered(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char byte) {
        return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
    });
    return result;
}

bool isAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

} // namespace fennik
