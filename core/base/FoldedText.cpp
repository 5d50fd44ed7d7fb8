#include "core/base/FoldedText.h"

#include "core/base/Folding.h"
#include "core/base/Utf8.h"

namespace fennik {

std::u32string foldedText(std::string_view text) {
    std::u32string result;
    for (std::size_t position = 0; position < text.size();)
        result += folded(Utf8::next(text, position));
    return result;
}

std::optional<std::size_t> lengthOfPrefix(std::string_view name, std::u32string_view foldedPrefix) {
    std::size_t length = 0;
    for (std::size_t position = 0; position < name.size(); length = position) {
        const auto scalar = folded(Utf8::next(name, position));
        if (foldedPrefix.empty() && (length == 0 || !scalar.empty()))
            return length;
        const auto common = foldedPrefix.substr(0, scalar.size());
        if (!std::u32string_view(scalar).starts_with(common))
            return std::nullopt;
        foldedPrefix.remove_prefix(common.size());
    }
    return foldedPrefix.empty() ? std::optional(length) : std::nullopt;
}

} // namespace fennik
