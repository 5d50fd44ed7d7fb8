#include "core/base/WhiteSpace.h"

#include "core/base/Utf8.h"

#include <unicode/uchar.h>

namespace fennik {

std::string_view trimmed(std::string_view text) {
    std::size_t begin = text.size();
    std::size_t end = text.size();
    for (std::size_t position = 0; position < text.size();) {
        const auto here = position;
        if (u_isUWhiteSpace(static_cast<UChar32>(Utf8::next(text, position))))
            continue;
        if (begin == text.size())
            begin = here;
        end = position;
    }
    return text.substr(begin, end - begin);
}

} // namespace fennik
