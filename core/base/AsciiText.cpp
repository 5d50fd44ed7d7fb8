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

} // namespace fennik
