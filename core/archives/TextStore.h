#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace fennik {

/// Keeps many short texts, each behind its length, without moving any of them.
class TextStore {
public:
    /// Where a text is; unless set, an empty one.
    struct Place {
        std::uint32_t offset = 0;
    };

    TextStore() { keep({}); }

    /// At most `longest` bytes; 4 GiB altogether.
    static constexpr std::size_t longest = 128U << 10U;
    Place keep(std::string_view text) {
        const auto length = static_cast<std::uint32_t>(text.size());
        const auto head = length < longLength ? 1U : 1U + sizeof length;
        if (end_ + head + length > pieces_.size() * pieceSize) {
            end_ = static_cast<std::uint32_t>(pieces_.size() * pieceSize);
            pieces_.push_back(std::make_unique_for_overwrite<char[]>(pieceSize));
        }
        char* const begin = pieces_.back().get() + end_ % pieceSize;
        *begin = static_cast<char>(std::min(length, longLength));
        if (length >= longLength)
            std::memcpy(begin + 1, &length, sizeof length);
        std::ranges::copy(text, begin + head);
        return {std::exchange(end_, end_ + head + length)};
    }
    std::string_view at(Place place) const {
        const char* const begin =
            pieces_[place.offset / pieceSize].get() + place.offset % pieceSize;
        std::uint32_t length = static_cast<unsigned char>(*begin);
        if (length < longLength)
            return {begin + 1, length};
        std::memcpy(&length, begin + 1, sizeof length);
        return {begin + 1 + sizeof length, length};
    }
    /// Bytes, in all.
    std::size_t size() const { return end_; }

private:
    static constexpr std::size_t pieceSize = 256U << 10U;
    /// In place of lengths from here on, which stand behind it.
    static constexpr std::uint32_t longLength = 0xFF;

    std::vector<std::unique_ptr<char[]>> pieces_;
    std::uint32_t end_ = 0;
};

} // namespace fennik
