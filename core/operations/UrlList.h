#pragma once

#include "core/base/FileUrl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fennik {

/// Many URLs in their order, in little memory: the path of a folder is kept once for all items in
/// it, as long as no more than a few folders take turns.
class UrlList {
public:
    std::size_t size() const { return items_.size(); }
    void push_back(const FileUrl& url);
    /// The list must not be empty.
    void pop_back();
    FileUrl operator[](std::size_t index) const;
    /// Gives back the memory that was meant for more.
    void shrink_to_fit();

    friend bool operator==(const UrlList&, const UrlList&) = default;

private:
    struct Item {
        std::size_t nameEnd = 0;  ///< in the names; it begins where that of the item before ends
        std::uint32_t folder = 0; ///< an index
        FileUrl::Form form = FileUrl::Form::file;
        friend bool operator==(const Item&, const Item&) = default;
    };

    std::size_t nameBegin(std::size_t index) const;
    std::uint32_t indexOfFolder(std::string_view path);

    std::vector<std::string> folders_;         ///< paths with no separator at the end
    std::array<std::uint32_t, 4> recent_ = {}; ///< folders; the one used last comes first
    std::string names_;                        ///< one after the other
    std::vector<Item> items_;
};

} // namespace fennik
