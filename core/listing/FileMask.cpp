#include "core/listing/FileMask.h"

#include "core/base/Utf8.h"
#include "core/base/WhiteSpace.h"

#include <algorithm>
#include <array>
#include <memory_resource>
#include <string>
#include <unicode/uchar.h>

namespace fennik {

namespace {

/// Names of usual length are lowered without asking for memory.
constexpr std::size_t usualLength = 256;

/// The scalars of `text` in lower case, each for itself, so that no letter depends on what stands
/// beside it. Sets all of `result`, which has to be empty.
template <class Scalars>
void lower(std::string_view text, Scalars& result) {
    // There are never more scalars than bytes.
    result.resize(text.size());
    auto out = result.begin();
    for (std::size_t position = 0; position < text.size();) {
        const auto byte = static_cast<unsigned char>(text[position]);
        if (byte < 128) {
            ++position;
            *out++ = byte >= 'A' && byte <= 'Z' ? byte + U'a' - U'A' : byte;
            continue;
        }
        const auto scalar = Utf8::next(text, position);
        if (scalar == U'\u0130') {
            // The only one that becomes two: i and a dot above.
            *out++ = U'i';
            *out++ = U'\u0307';
        } else {
            *out++ = static_cast<char32_t>(u_tolower(static_cast<UChar32>(scalar)));
        }
    }
    result.resize(static_cast<std::size_t>(out - result.begin()));
}

} // namespace

FileMask::FileMask(std::string_view text) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find(';', begin), text.size());
        auto piece = trimmed(text.substr(begin, end - begin));
        begin = end + 1;
        if (piece.empty())
            continue;
        const bool isForFolders = piece.ends_with('/');
        if (isForFolders)
            piece.remove_suffix(1);
        std::u32string lowered;
        lower(piece == "*.*" ? "*" : piece, lowered);
        pieces_.push_back({NamePattern(lowered), isForFolders});
    }
}

bool FileMask::matches(const FileItemView& item) const {
    if (item.isParentLink)
        return false;
    std::array<char32_t, usualLength> room; // NOLINT(*-member-init): filled as far as it is used
    std::pmr::monotonic_buffer_resource memory(room.data(), sizeof room);
    std::pmr::vector<char32_t> name(&memory);
    lower(item.name, name);
    return std::ranges::any_of(pieces_, [&](const Piece& piece) {
        return (!piece.isForFolders || item.opensAsFolder()) &&
               piece.pattern.matches({name.data(), name.size()});
    });
}

} // namespace fennik
