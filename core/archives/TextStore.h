#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace fennik {

/// Keeps many short texts without moving any of them.
class TextStore {
public:
    struct Place {
        std::uint32_t offset = 0;
        std::uint32_t length = 0;
    };

    /// At most `longest` bytes; 4 GiB altogether.
    static constexpr std::uint32_t longest = 256U << 10U;
    Place keep(std::string_view text) {
        const auto length = static_cast<std::uint32_t>(text.size());
        if (end_ + length > pieces_.size() * longest) {
            end_ = static_cast<std::uint32_t>(pieces_.size()) * longest;
            pieces_.push_back(std::make_unique_for_overwrite<char[]>(longest));
        }
        std::ranges::copy(text, pieces_.back().get() + end_ % longest);
        return {std::exchange(end_, end_ + length), length};
    }
    std::string_view at(Place place) const {
        if (place.length == 0)
            return {};
        return {pieces_[place.offset / longest].get() + place.offset % longest, place.length};
    }
    std::size_t size() const { return end_; }

private:
    std::vector<std::unique_ptr<char[]>> pieces_;
    std::uint32_t end_ = 0;
};

} // namespace fennik
