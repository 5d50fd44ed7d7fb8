#include "core/base/DisplayText.h"

#include "core/base/Utf8.h"

#include <cstddef>

namespace fennik {

namespace {

char32_t visible(char32_t scalar) {
    // Fonts for these two are everywhere, unlike for the pictures of control characters.
    if (scalar == U'\n')
        return U'↵';
    if (scalar == U'\t')
        return U'⇥';
    const bool isControl = scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0);
    const bool isLineBreak = scalar == 0x2028 || scalar == 0x2029;
    const bool turnsDirection =
        (scalar >= 0x202A && scalar <= 0x202E) || (scalar >= 0x2066 && scalar <= 0x2069);
    return isControl || isLineBreak || turnsDirection ? Utf8::replacement : scalar;
}

} // namespace

std::string displayText(std::string_view name) {
    std::string text;
    text.reserve(name.size());
    for (std::size_t position = 0; position < name.size();)
        Utf8::append(text, visible(Utf8::next(name, position)));
    return text;
}

} // namespace fennik
