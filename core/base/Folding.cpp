#include "core/base/Folding.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace fennik {

std::u32string folded(char32_t scalar) {
    constexpr char32_t asciiEnd = 128;
    if (scalar < asciiEnd)
        return {scalar >= U'A' && scalar <= U'Z' ? scalar - U'A' + U'a' : scalar};
    icu::UnicodeString text(static_cast<UChar32>(scalar));
    text.foldCase(U_FOLD_CASE_DEFAULT);
    UErrorCode status = U_ZERO_ERROR;
    if (const auto* decomposer = icu::Normalizer2::getNFDInstance(status); decomposer != nullptr) {
        const auto decomposed = decomposer->normalize(text, status);
        if (U_SUCCESS(status))
            text = decomposed;
    }
    std::u32string result;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const auto next = text.char32At(i);
        if (u_charType(next) != U_NON_SPACING_MARK)
            result += static_cast<char32_t>(next);
    }
    return result;
}

} // namespace fennik
